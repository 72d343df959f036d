import QtQuick
import Vellora.Componentes

/// A field for one line of words, with what it is for above. What is typed is not shown, nor offered to the
/// clipboard, unless it is no secret.
FocusScope {
    id: raiz

    property string rotulo
    property alias texto: entrada.text
    property bool secreto: true
    property string pista

    signal aceptado

    implicitHeight: letrero.implicitHeight + 6 + 38
    activeFocusOnTab: true

    Texto {
        id: letrero

        tipo: Texto.Menor
        text: raiz.rotulo
    }

    Rectangle {
        anchors.top: letrero.bottom
        anchors.topMargin: 6
        width: parent.width
        height: 38
        radius: 8
        color: Tema.fondo
        border.width: entrada.activeFocus ? 2 : 1
        border.color: entrada.activeFocus ? Tema.acento : Tema.borde

        Texto {
            anchors.verticalCenter: parent.verticalCenter
            x: 12
            visible: entrada.text === "" && text !== ""
            color: Tema.suave
            text: raiz.pista
            Accessible.ignored: true
        }

        TextInput {
            id: entrada

            anchors.fill: parent
            anchors.leftMargin: 12
            anchors.rightMargin: 12
            verticalAlignment: TextInput.AlignVCenter
            focus: true
            clip: true
            selectByMouse: true
            echoMode: raiz.secreto ? TextInput.Password : TextInput.Normal
            inputMethodHints: (raiz.secreto ? Qt.ImhHiddenText | Qt.ImhSensitiveData : Qt.ImhNone) | Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
            color: Tema.texto
            selectionColor: Tema.acento
            selectedTextColor: Tema.sobreAcento
            font.pixelSize: Tema.letra(Texto.Cuerpo)
            Accessible.role: Accessible.EditableText
            // Qt hides the name of a field for passwords; its description is read in its place.
            Accessible.description: raiz.rotulo
            Accessible.name: raiz.rotulo
            Accessible.passwordEdit: raiz.secreto
            onAccepted: raiz.aceptado()
        }
    }
}
