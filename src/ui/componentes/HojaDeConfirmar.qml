import QtQuick
import Vellora.Componentes

/// Asks before something that cannot be undone. The keyboard begins on the way out.
Hoja {
    id: raiz

    required property string titulo
    required property string texto
    required property string textoDeAceptar
    required property string textoDeDejar
    /// The phone that it is done to; empty for what is done to none.
    property string aQuien
    property bool peligrosa: true

    signal aceptada

    nombre: raiz.titulo
    ancho: 520

    Column {
        width: parent.width
        spacing: 14

        Texto {
            width: parent.width - 32
            tipo: Texto.Titulo
            font.pixelSize: 20
            wrapMode: Text.Wrap
            text: raiz.titulo
            Accessible.role: Accessible.Heading
        }

        Rectangle {
            width: parent.width
            height: quien.implicitHeight + 20
            visible: raiz.aQuien !== ""
            radius: 8
            color: Tema.lateral

            Icono {
                id: telefono

                anchors.left: parent.left
                anchors.leftMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                lado: 16
                simbolo: "iphone.gen3"
                color: Tema.suave
            }

            Texto {
                id: quien

                anchors.left: telefono.right
                anchors.leftMargin: 10
                anchors.right: parent.right
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                wrapMode: Text.Wrap
                text: raiz.aQuien
            }
        }

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.Wrap
            text: raiz.texto
        }

        Flow {
            anchors.right: parent.right
            width: parent.width
            layoutDirection: Qt.RightToLeft
            spacing: 8

            Boton {
                focus: true
                clase: raiz.peligrosa ? Boton.Normal : Boton.Principal
                texto: raiz.textoDeDejar
                Component.onCompleted: forceActiveFocus()
                onPulsado: raiz.cerrada()
            }

            Boton {
                clase: raiz.peligrosa ? Boton.Peligroso : Boton.Normal
                texto: raiz.textoDeAceptar
                onPulsado: raiz.aceptada()
            }
        }
    }
}
