import QtQuick
import Vellora.Componentes

/// A switch with what it does beside it, and a line on what that means.
BotonBase {
    id: raiz

    required property string titulo
    property string pie
    property bool encendido: false
    property bool ocupado: false

    nombre: raiz.titulo
    radio: 8
    activo: !raiz.ocupado
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: raiz.encendido
    Accessible.description: raiz.pie
    implicitHeight: Math.max(letras.implicitHeight, 24) + 16

    Column {
        id: letras

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 64
        spacing: 2

        Texto {
            width: parent.width
            font.weight: Font.Medium
            wrapMode: Text.Wrap
            text: raiz.titulo
            Accessible.ignored: true
        }

        Texto {
            width: parent.width
            visible: text !== ""
            tipo: Texto.Menor
            wrapMode: Text.Wrap
            lineHeight: 1.3
            text: raiz.pie
            Accessible.ignored: true
        }
    }

    Rectangle {
        id: carril

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 40
        height: 24
        radius: 12
        opacity: raiz.activo ? 1 : 0.5
        color: raiz.encendido ? Tema.acento : Tema.fondo
        border.width: 1
        border.color: raiz.encendido ? Tema.acento : Tema.tenue

        Rectangle {
            x: raiz.encendido ? 19 : 3
            y: 3
            width: 18
            height: 18
            radius: 9
            color: raiz.encendido ? Tema.sobreAcento : Tema.tenue

            Behavior on x {
                NumberAnimation {
                    duration: 120
                }
            }
        }
    }
}
