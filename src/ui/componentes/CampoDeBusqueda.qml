import QtQuick
import Vellora.Componentes

/// A field to look for something by, with its magnifying glass.
FocusScope {
    id: raiz

    property string pista
    property alias texto: entrada.text
    property real alto: 36

    signal aceptado

    implicitHeight: raiz.alto
    activeFocusOnTab: true

    Rectangle {
        anchors.fill: parent
        radius: 8
        color: Tema.tarjeta
        border.width: entrada.activeFocus ? 2 : 1
        border.color: entrada.activeFocus ? Tema.acento : Tema.borde

        Icono {
            x: 12
            anchors.verticalCenter: parent.verticalCenter
            lado: 15
            simbolo: "magnifyingglass"
            color: Tema.suave
        }

        Texto {
            x: 40
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - 52
            visible: entrada.text === ""
            elide: Text.ElideRight
            color: Tema.suave
            text: raiz.pista
            Accessible.ignored: true
        }

        TextInput {
            id: entrada

            anchors.fill: parent
            anchors.leftMargin: 40
            anchors.rightMargin: 12
            verticalAlignment: TextInput.AlignVCenter
            focus: true
            clip: true
            selectByMouse: true
            color: Tema.texto
            selectionColor: Tema.acento
            selectedTextColor: Tema.sobreAcento
            font.pixelSize: Tema.letra(Texto.Cuerpo)
            Accessible.role: Accessible.EditableText
            Accessible.name: raiz.pista
            Accessible.searchEdit: true
            onAccepted: raiz.aceptado()
        }
    }
}
