import QtQuick
import Vellora.Componentes

/// Words in the middle of the view, and the one thing to do about them.
FocusScope {
    id: raiz

    required property string simbolo
    required property string titulo
    property string subtitulo
    property string texto
    property string textoDelBoton
    property string pie
    property bool puede: true

    signal pulsado

    Desplazable {
        anchors.fill: parent
        contentHeight: columna.height + 64

        Column {
            id: columna

            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.max(32, (raiz.height - height) / 2 - 20)
            width: Math.min(parent.width - 64, 560)
            spacing: 14

            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 72
                height: 72
                radius: 36
                color: Tema.acentoSuave

                Icono {
                    anchors.centerIn: parent
                    lado: 30
                    simbolo: raiz.simbolo
                    color: Tema.acento
                }
            }

            Texto {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                tipo: Texto.Titulo
                font.pixelSize: 18
                wrapMode: Text.Wrap
                text: raiz.titulo
                Accessible.role: Accessible.Heading
            }

            Texto {
                width: parent.width
                visible: text !== ""
                topPadding: 6
                horizontalAlignment: Text.AlignHCenter
                tipo: Texto.Seccion
                wrapMode: Text.Wrap
                text: raiz.subtitulo
                Accessible.role: Accessible.Heading
            }

            Texto {
                width: parent.width
                visible: text !== ""
                horizontalAlignment: Text.AlignHCenter
                color: Tema.suave
                wrapMode: Text.Wrap
                text: raiz.texto
            }

            Boton {
                anchors.horizontalCenter: parent.horizontalCenter
                clase: Boton.Principal
                activo: raiz.puede
                focus: true
                texto: raiz.textoDelBoton
                onPulsado: raiz.pulsado()
            }

            Texto {
                width: parent.width
                visible: text !== ""
                horizontalAlignment: Text.AlignHCenter
                tipo: Texto.Menor
                wrapMode: Text.Wrap
                text: raiz.pie
            }
        }
    }
}
