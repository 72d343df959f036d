pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// Chats as a phone shows them: their list, and the messages of the one in view.
FocusScope {
    id: raiz

    required property Conversaciones conversaciones
    readonly property string cuantos: raiz.conversaciones.cuantos === 1 ? "1 mensaje" : Number(raiz.conversaciones.cuantos).toLocaleString(Qt.locale("es_ES"), "f", 0) + " mensajes"

    signal alCerrar

    ListaDeChats {
        id: lateral

        width: 280
        height: parent.height
        conversaciones: raiz.conversaciones
        focus: true
        onVuelta: raiz.alCerrar()
    }

    Item {
        anchors.left: lateral.right
        anchors.right: parent.right
        height: parent.height
        visible: !raiz.conversaciones.vacia

        CabeceraDeChat {
            id: cabecera

            width: parent.width
            conversaciones: raiz.conversaciones
            cuantos: raiz.conversaciones.cargando ? "" : raiz.cuantos
        }

        ListaDeMensajes {
            anchors.top: cabecera.bottom
            anchors.bottom: parent.bottom
            width: parent.width
            conversaciones: raiz.conversaciones
        }
    }

    EstadoVacio {
        anchors.centerIn: parent
        width: parent.width - 64
        visible: raiz.conversaciones.vacia
        simbolo: "message"
        titulo: "No hay conversaciones"
        texto: "Aquí salen los chats cuando los sacas de la copia de seguridad."
        textoDelBoton: "Volver"
        onPulsado: raiz.alCerrar()
    }
}
