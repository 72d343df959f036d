pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// The messages of the chat in view, the newest in sight first.
Item {
    id: raiz

    required property Conversaciones conversaciones

    Lista {
        id: lista

        anchors.fill: parent
        topMargin: 12
        bottomMargin: 16
        nombre: "Mensajes de " + raiz.conversaciones.nombre
        model: raiz.conversaciones.mensajes

        delegate: BurbujaDeMensaje {
            width: lista.width
        }

        Connections {
            target: raiz.conversaciones

            function onChatCargado() {
                lista.positionViewAtEnd();
            }
        }
        Component.onCompleted: positionViewAtEnd()
    }

    Texto {
        anchors.centerIn: parent
        visible: lista.count === 0
        color: Tema.suave
        text: raiz.conversaciones.cargando ? "Abriendo la conversación…" : "Esta conversación está vacía"
    }
}
