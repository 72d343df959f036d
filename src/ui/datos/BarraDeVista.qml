import QtQuick
import Vellora.Componentes

/// The head of a view that stands in place of its section: the way back, what it is, and what can be done with it.
Item {
    id: raiz

    required property string titulo
    property string pie
    property string nota
    default property alias acciones: derecha.data

    signal vuelta

    implicitHeight: 60

    BotonDeSimbolo {
        id: atras

        x: 20
        anchors.verticalCenter: parent.verticalCenter
        simbolo: "arrow.left"
        nombre: "Volver"
        ayuda: "Volver (Escape)"
        onPulsado: raiz.vuelta()
    }

    Texto {
        id: titulo

        anchors.left: atras.right
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, derecha.x - x - 24)
        elide: Text.ElideRight
        tipo: Texto.Seccion
        text: raiz.titulo
        Accessible.role: Accessible.Heading
    }

    Texto {
        anchors.left: titulo.right
        anchors.leftMargin: 10
        anchors.baseline: titulo.baseline
        width: Math.max(0, Math.min(implicitWidth, derecha.x - x - 12))
        elide: Text.ElideRight
        tipo: Texto.Menor
        text: raiz.nota !== "" ? raiz.nota : raiz.pie
    }

    Row {
        id: derecha

        anchors.right: parent.right
        anchors.rightMargin: 22
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Tema.borde
    }
}
