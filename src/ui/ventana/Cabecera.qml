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

    color: Tema.tarjeta

    NombreDeIPhone {
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: derecha.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: raiz.modelo.hayIPhone
        iphone: raiz.iphone
        variosIPhones: raiz.modelo.dispositivos.length > 1
        onPulsado: raiz.pideIPhones(this)
    }

    Cargador {
        anchors.left: parent.left
        anchors.leftMargin: 28
        anchors.right: derecha.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        activo: !raiz.modelo.hayIPhone

        CabeceraSinIPhone {}
    }

    Row {
        id: derecha

        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        spacing: raiz.estrecha ? 10 : 14

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            visible: raiz.modelo.hayIPhone && carga.text !== ""
            width: carga.x + carga.implicitWidth + 11
            height: 28
            radius: 14
            color: Tema.tarjeta
            border.width: 1
            border.color: Tema.borde

            Icono {
                x: 11
                anchors.verticalCenter: parent.verticalCenter
                lado: 17
                simbolo: Rotulos.simboloDeBateria(raiz.iphone)
                color: Rotulos.bateriaBaja(raiz.iphone) ? Tema.mal : Tema.bien
            }

            Texto {
                id: carga

                x: 35
                anchors.verticalCenter: parent.verticalCenter
                tipo: Texto.Menor
                text: raiz.estrecha ? Rotulos.carga(raiz.iphone) : Rotulos.bateria(raiz.iphone)
                Accessible.name: "Batería: " + Rotulos.bateria(raiz.iphone)
            }
        }

        EspacioDeIPhone {
            anchors.verticalCenter: parent.verticalCenter
            width: raiz.estrecha ? 136 : 170
            visible: raiz.modelo.hayIPhone && valor >= 0
            iphone: raiz.iphone
        }

        BotonDeSimbolo {
            anchors.verticalCenter: parent.verticalCenter
            simbolo: "arrow.clockwise"
            nombre: "Buscar el iPhone otra vez"
            ayuda: "Buscar el iPhone otra vez (F5)"
            onPulsado: raiz.modelo.refrescar(false)
        }

        BotonAvisos {
            anchors.verticalCenter: parent.verticalCenter
            diario: raiz.modelo.diario
            onPulsado: raiz.pideAvisos(this)
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Tema.borde
    }
}
