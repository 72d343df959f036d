import QtQuick
import Vellora.Componentes

/// What a view shows when it has nothing: a symbol, why, and the way out.
Column {
    id: raiz

    required property string simbolo
    required property string titulo
    property string texto
    property string textoDelBoton
    property real anchoDelTexto: 420

    signal pulsado

    spacing: 8

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 72
        height: 72
        radius: 36
        color: Tema.acentoSuave

        Icono {
            anchors.centerIn: parent
            lado: 32
            simbolo: raiz.simbolo
            color: Tema.acento
        }
    }

    Item {
        width: 1
        height: 4
    }

    Texto {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(raiz.width, raiz.anchoDelTexto)
        horizontalAlignment: Text.AlignHCenter
        tipo: Texto.Seccion
        wrapMode: Text.Wrap
        text: raiz.titulo
    }

    Texto {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(raiz.width, raiz.anchoDelTexto)
        visible: text !== ""
        horizontalAlignment: Text.AlignHCenter
        color: Tema.suave
        wrapMode: Text.Wrap
        text: raiz.texto
    }

    Item {
        width: 1
        height: 8
        visible: boton.visible
    }

    Boton {
        id: boton

        anchors.horizontalCenter: parent.horizontalCenter
        visible: raiz.textoDelBoton !== ""
        clase: Boton.Principal
        texto: raiz.textoDelBoton
        onPulsado: raiz.pulsado()
    }
}
