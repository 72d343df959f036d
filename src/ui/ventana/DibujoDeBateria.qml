import QtQuick
import Vellora.Componentes

/// A battery, filled as far as its health goes.
Item {
    id: raiz

    required property int salud
    readonly property color tinte: raiz.salud > 84 ? Tema.bien : raiz.salud > 79 ? Tema.aviso : Tema.mal

    implicitWidth: 132
    implicitHeight: 64
    Accessible.role: Accessible.Graphic
    Accessible.name: "Batería al " + raiz.salud + " %"

    Rectangle {
        width: parent.width - 10
        height: parent.height
        radius: 14
        color: "transparent"
        border.width: 3
        border.color: Tema.tenue

        Rectangle {
            x: 8
            y: 8
            width: Math.max(8, (parent.width - 16) * Math.min(1, raiz.salud / 100))
            height: parent.height - 16
            radius: 8
            color: raiz.tinte
        }
    }

    Rectangle {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 6
        height: 22
        radius: 3
        color: Tema.tenue
    }
}
