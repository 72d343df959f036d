import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The notices by Telegram: the switch, the test and the way to the form.
Column {
    id: raiz

    required property AvisosPorTelegram telegram

    spacing: 6
    Component.onCompleted: raiz.telegram.mirar()

    Interruptor {
        width: parent.width
        titulo: "Avisarme por Telegram"
        pie: raiz.telegram.configurado ? "Usando el bot que ya tienes montado" : "Hace falta configurarlo una vez"
        encendido: raiz.telegram.encendido
        onPulsado: raiz.telegram.poner(!raiz.telegram.encendido)
    }

    Row {
        visible: raiz.telegram.encendido && raiz.telegram.configurado
        spacing: 8

        Boton {
            texto: "Mandarme una prueba"
            activo: !raiz.telegram.probando
            onPulsado: raiz.telegram.probar()
        }

        Boton {
            clase: Boton.Callado
            anchors.verticalCenter: parent.verticalCenter
            texto: "Cambiar los datos"
            onPulsado: raiz.telegram.pedirDatos()
        }
    }

    Tira {
        width: parent.width
        clase: Tira.Informa
        texto: raiz.telegram.aviso
    }
}
