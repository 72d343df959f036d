import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The charge of a phone in a pill; `breve` leaves out the word for charging, which the symbol tells too.
Rectangle {
    id: raiz

    required property dispositivo iphone
    required property bool breve

    visible: carga.text !== ""
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
        text: raiz.breve ? Rotulos.carga(raiz.iphone) : Rotulos.bateria(raiz.iphone)
        Accessible.name: "Batería: " + Rotulos.bateria(raiz.iphone)
    }
}
