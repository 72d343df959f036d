import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// What the owner's bot is called by.
Hoja {
    id: raiz

    required property AvisosPorTelegram telegram

    nombre: "Avisos por Telegram"
    ancho: 520
    onCerrada: raiz.telegram.cancelarDatos()

    Column {
        width: parent.width
        spacing: 14

        Texto {
            width: parent.width - 32
            tipo: Texto.Titulo
            font.pixelSize: 20
            text: "Avisos por Telegram"
            Accessible.role: Accessible.Heading
        }

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.Wrap
            text: "Pega aquí los datos de tu bot. Se guardan en el Llavero del Mac, no en un archivo."
        }

        CampoDeTexto {
            width: parent.width
            focus: true
            rotulo: "Token del bot"
            Component.onCompleted: forceActiveFocus()
            onTextoChanged: raiz.telegram.token = texto
            onAceptado: chat.forceActiveFocus()
        }

        CampoDeTexto {
            id: chat

            width: parent.width
            secreto: false
            rotulo: "Tu identificador de chat"
            onTextoChanged: raiz.telegram.chat = texto
            onAceptado: raiz.telegram.guardarDatos()
        }

        Row {
            anchors.right: parent.right
            spacing: 8

            Boton {
                texto: "Cancelar"
                onPulsado: raiz.telegram.cancelarDatos()
            }

            Boton {
                clase: Boton.Principal
                activo: raiz.telegram.datosValen
                texto: "Guardar"
                onPulsado: raiz.telegram.guardarDatos()
            }
        }
    }
}
