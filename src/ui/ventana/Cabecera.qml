pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The header: the phone, its battery and free space, the search button and the bell.
Rectangle {
    id: raiz

    required property Modelo modelo
    readonly property dispositivo iphone: raiz.modelo.seleccionado
    // In a small window the phone's own line needs the room more.
    readonly property bool estrecha: raiz.width < 860

    signal pideAvisos(boton: Item)
    signal pideIPhones(boton: Item)
    signal pideAcciones(boton: Item)

    /// As by its button, for the keyboard.
    function abreAcciones() {
        raiz.pideAcciones(acciones);
    }

    color: Tema.tarjeta

    Cargador {
        anchors.left: parent.left
        anchors.right: derecha.left
        anchors.rightMargin: derecha.spacing
        height: parent.height
        activo: raiz.modelo.hayIPhone
        fuente: "qrc:/qt/qml/Vellora/Ventana/DatosDeCabecera.qml"
        propiedades: ({
                cabecera: raiz
            })
    }

    Cargador {
        anchors.left: parent.left
        anchors.leftMargin: 28
        anchors.right: derecha.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        activo: !raiz.modelo.hayIPhone

        CabeceraSinIPhone {
            modelo: raiz.modelo
        }
    }

    Row {
        id: derecha

        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        spacing: raiz.estrecha ? 10 : 14

        BotonDeSimbolo {
            anchors.verticalCenter: parent.verticalCenter
            simbolo: "arrow.clockwise"
            nombre: "Buscar el iPhone otra vez"
            ayuda: "Buscar el iPhone otra vez (F5)"
            onPulsado: raiz.modelo.refrescar(false)
        }

        BotonDeSimbolo {
            id: acciones

            anchors.verticalCenter: parent.verticalCenter
            simbolo: "ellipsis.circle"
            lado: 18
            nombre: "Acciones"
            ayuda: "Acciones (F10)"
            onPulsado: raiz.pideAcciones(acciones)
        }

        BotonAvisos {
            id: campana

            anchors.verticalCenter: parent.verticalCenter
            diario: raiz.modelo.diario
            onPulsado: raiz.pideAvisos(campana)
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Tema.borde
    }
}
