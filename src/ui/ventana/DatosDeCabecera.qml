import QtQuick
import Vellora.Sesion
import Vellora.Ventana

/// The header's part about the selected phone.
Item {
    id: raiz

    required property Cabecera cabecera
    readonly property dispositivo iphone: raiz.cabecera.iphone

    NombreDeIPhone {
        id: nombre

        x: 16
        width: Math.min(implicitWidth, (bateria.visible ? bateria.x : espacio.visible ? espacio.x : raiz.width) - x - 16)
        anchors.verticalCenter: parent.verticalCenter
        iphone: raiz.iphone
        variosIPhones: raiz.cabecera.modelo.dispositivos.length > 1
        onPulsado: raiz.cabecera.pideIPhones(nombre)
    }

    BateriaDeIPhone {
        id: bateria

        anchors.right: espacio.visible ? espacio.left : parent.right
        anchors.rightMargin: espacio.visible ? (raiz.cabecera.estrecha ? 10 : 14) : 0
        anchors.verticalCenter: parent.verticalCenter
        iphone: raiz.iphone
        breve: raiz.cabecera.estrecha
    }

    EspacioDeIPhone {
        id: espacio

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: raiz.cabecera.estrecha ? 140 : 170
        visible: valor >= 0
        iphone: raiz.iphone
    }
}
