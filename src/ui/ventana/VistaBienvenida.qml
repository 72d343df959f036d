import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The sheet for a phone that connects for the first time.
Hoja {
    id: raiz

    required property dispositivo dispositivo

    signal elegida(conCopia: bool)
    signal aplazada

    nombre: "Hola, es la primera vez que conecto este iPhone"
    ancho: 600
    onCerrada: raiz.aplazada()

    Column {
        width: parent.width
        spacing: 12

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 64
            height: 64
            radius: 32
            color: Tema.acentoSuave

            Icono {
                anchors.centerIn: parent
                lado: 30
                simbolo: "iphone.gen3.badge.play"
                color: Tema.acento
            }
        }

        Texto {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            tipo: Texto.Titulo
            font.pixelSize: 20
            wrapMode: Text.Wrap
            text: "Hola, es la primera vez que conecto este iPhone"
            Accessible.role: Accessible.Heading
        }

        Texto {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            color: Tema.suave
            wrapMode: Text.Wrap
            text: raiz.dispositivo.nombre + "\n¿Qué quieres hacer?"
        }

        OpcionDeBienvenida {
            width: parent.width
            focus: true
            simbolo: "externaldrive.badge.timemachine"
            titulo: "Hacer una copia de seguridad"
            texto: "Lo guarda TODO en el Mac. Es lo único que deja luego ver tus mensajes, WhatsApp, contactos y calendario. Tarda un rato."
            Component.onCompleted: forceActiveFocus()
            onPulsado: raiz.elegida(true)
        }

        OpcionDeBienvenida {
            width: parent.width
            simbolo: "bolt.horizontal.circle"
            titulo: "Trabajar directamente, sin copia"
            texto: "Rápido: fotos, vídeos, apps, batería y espacio, al momento. Los mensajes y contactos NO se podrán ver hasta que hagas una copia (los puedes hacer luego)."
            onPulsado: raiz.elegida(false)
        }

        Texto {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            tipo: Texto.Menor
            wrapMode: Text.Wrap
            text: "Puedes cambiar de idea cuando quieras: la copia está siempre en «Copias y datos»."
        }
    }
}
