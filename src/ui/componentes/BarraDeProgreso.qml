import QtQuick
import Vellora.Componentes

/// A bar with a value from 0 to 1, or running to and fro while the value is below 0.
Rectangle {
    id: raiz

    property real valor: -1
    property color relleno: Tema.acento

    implicitHeight: 6
    radius: height / 2
    color: Tema.borde
    clip: true
    Accessible.role: Accessible.ProgressBar
    Accessible.name: raiz.valor < 0 ? "" : Math.floor(raiz.valor * 100) + " %"

    Rectangle {
        visible: raiz.valor > 0
        width: Math.max(raiz.height, raiz.width * Math.min(1, raiz.valor))
        height: raiz.height
        radius: raiz.radius
        color: raiz.relleno
    }

    Rectangle {
        id: vagon

        visible: raiz.valor < 0
        width: raiz.width * 0.25
        height: raiz.height
        radius: raiz.radius
        color: raiz.relleno

        SequentialAnimation on x {
            running: vagon.visible
            loops: Animation.Infinite

            NumberAnimation {
                from: 0
                to: raiz.width * 0.75
                duration: 1100
                easing.type: Easing.InOutQuad
            }
            NumberAnimation {
                from: raiz.width * 0.75
                to: 0
                duration: 1100
                easing.type: Easing.InOutQuad
            }
        }
    }
}
