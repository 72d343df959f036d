import QtQuick
import Vellora.Componentes

/// A card that is pressed: symbol in a tinted square, title and foot line. Dangerous ones tint red.
BotonBase {
    id: raiz

    required property string simbolo
    required property string titulo
    property string pie
    property string insignia
    property bool peligroso: false

    nombre: raiz.titulo
    ayuda: ""
    radio: 12
    Accessible.description: raiz.insignia !== "" ? raiz.insignia : raiz.pie
    implicitWidth: 240
    implicitHeight: pieDeTarjeta.y + pieDeTarjeta.height + 16

    Tarjeta {
        anchors.fill: parent
        color: raiz.encima && raiz.activo ? Qt.tint(Tema.tarjeta, Qt.rgba(Tema.acento.r, Tema.acento.g, Tema.acento.b, 0.05)) : Tema.tarjeta
        border.color: raiz.encima && raiz.activo ? Tema.acento : Tema.borde
    }

    Rectangle {
        id: cuadro

        x: 14
        y: 14
        width: 34
        height: 34
        radius: 8
        opacity: raiz.activo ? 1 : 0.5
        color: raiz.peligroso ? Tema.fondoMal : Tema.acentoSuave

        Icono {
            anchors.centerIn: parent
            lado: 18
            simbolo: raiz.simbolo
            color: raiz.peligroso ? Tema.mal : Tema.acento
        }
    }

    Insignia {
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: cuadro.verticalCenter
        visible: raiz.insignia !== ""
        text: raiz.insignia
    }

    Texto {
        id: tituloDeTarjeta

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 14
        anchors.top: cuadro.bottom
        anchors.topMargin: 10
        font.weight: Font.DemiBold
        wrapMode: Text.Wrap
        color: raiz.activo ? Tema.texto : Tema.suave
        text: raiz.titulo
        Accessible.ignored: true
    }

    Texto {
        id: pieDeTarjeta

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 14
        anchors.top: tituloDeTarjeta.bottom
        anchors.topMargin: 3
        tipo: Texto.Menor
        wrapMode: Text.Wrap
        lineHeight: 1.3
        text: raiz.pie
        Accessible.ignored: true
    }
}
