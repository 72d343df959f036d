pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// The chats of a folder by name, with a box to find one.
FocusScope {
    id: raiz

    required property Conversaciones conversaciones

    signal vuelta

    Row {
        id: cabeza

        x: 12
        y: 14
        spacing: 6

        BotonDeSimbolo {
            simbolo: "arrow.left"
            nombre: "Volver"
            ayuda: "Volver (Escape)"
            onPulsado: raiz.vuelta()
        }

        Texto {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, raiz.width - 68)
            elide: Text.ElideRight
            tipo: Texto.Seccion
            text: raiz.conversaciones.titulo
            Accessible.role: Accessible.Heading
        }
    }

    CampoDeBusqueda {
        id: buscar

        anchors.top: cabeza.bottom
        anchors.topMargin: 10
        x: 12
        width: parent.width - 24
        focus: true
        pista: "Buscar un chat"
        onTextoChanged: raiz.conversaciones.busqueda = texto
    }

    Lista {
        id: lista

        anchors.top: buscar.bottom
        anchors.topMargin: 10
        anchors.bottom: parent.bottom
        x: 12
        width: parent.width - 14
        nombre: "Chats"
        model: raiz.conversaciones

        delegate: FilaDeChat {
            width: lista.width - 12
            elegida: index === raiz.conversaciones.elegido
            onPulsado: raiz.conversaciones.elegir(index)
        }
    }

    Texto {
        anchors.top: buscar.bottom
        anchors.topMargin: 24
        x: 24
        width: parent.width - 48
        visible: lista.count === 0 && !raiz.conversaciones.vacia
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: Tema.suave
        text: "Ningún chat se llama así"
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Tema.borde
    }
}
