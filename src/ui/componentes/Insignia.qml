import QtQuick
import Vellora.Componentes

/// A small word in a pill.
Rectangle {
    id: raiz

    property alias text: letrero.text

    implicitWidth: letrero.implicitWidth + 16
    implicitHeight: 20
    radius: 10
    color: Tema.fondo
    border.width: 1
    border.color: Tema.borde

    Texto {
        id: letrero

        anchors.centerIn: parent
        tipo: Texto.Menor
        font.pixelSize: 11
    }
}
