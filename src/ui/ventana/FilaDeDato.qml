import QtQuick
import Vellora.Componentes

/// A fact in a line: what it is, what that means, and its value at the end.
Item {
    id: raiz

    required property string nombre
    property string pie
    required property string valor

    implicitHeight: Math.max(letras.implicitHeight, 20) + 14
    Accessible.role: Accessible.StaticText
    Accessible.name: raiz.nombre + ": " + raiz.valor
    Accessible.description: raiz.pie

    Column {
        id: letras

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - cifra.width - 16
        spacing: 2

        Texto {
            width: parent.width
            wrapMode: Text.Wrap
            text: raiz.nombre
            Accessible.ignored: true
        }

        Texto {
            width: parent.width
            visible: text !== ""
            tipo: Texto.Menor
            wrapMode: Text.Wrap
            text: raiz.pie
            Accessible.ignored: true
        }
    }

    Texto {
        id: cifra

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(Math.ceil(medida.advanceWidth) + 1, raiz.width * 0.5)
        horizontalAlignment: Text.AlignRight
        font.weight: Font.DemiBold
        wrapMode: Text.Wrap
        text: raiz.valor
        Accessible.ignored: true
    }

    TextMetrics {
        id: medida

        font: cifra.font
        text: raiz.valor
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Tema.borde
    }
}
