import QtQuick
import Vellora.Componentes

/// Percentage, present step and time left of a job, and the button that shows its log.
Item {
    id: raiz

    required property int porcentaje
    required property string detalle
    required property string quedan
    required property bool hayRegistro
    required property bool verRegistro

    signal cambiaRegistro

    implicitHeight: Math.max(fila.height, 28)

    Row {
        id: fila

        anchors.left: parent.left
        anchors.right: ver.visible ? ver.left : parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 14

        Texto {
            anchors.verticalCenter: parent.verticalCenter
            visible: raiz.porcentaje >= 0
            tipo: Texto.Menor
            font.weight: Font.Bold
            color: Tema.texto
            text: raiz.porcentaje + "%"
        }

        Texto {
            anchors.verticalCenter: parent.verticalCenter
            visible: text !== ""
            width: Math.min(implicitWidth, fila.width - x - (resto.visible ? resto.width + 14 : 0))
            tipo: Texto.Menor
            wrapMode: Text.Wrap
            lineHeight: 1
            text: raiz.detalle
        }

        Row {
            id: resto

            anchors.verticalCenter: parent.verticalCenter
            visible: raiz.quedan !== ""
            spacing: 5

            Icono {
                anchors.verticalCenter: parent.verticalCenter
                lado: 13
                simbolo: "clock"
                color: Tema.suave
            }

            Texto {
                tipo: Texto.Menor
                text: "quedan " + raiz.quedan
            }
        }
    }

    Boton {
        id: ver

        anchors.right: parent.right
        anchors.rightMargin: -8
        anchors.verticalCenter: parent.verticalCenter
        visible: raiz.hayRegistro
        clase: Boton.Callado
        texto: raiz.verRegistro ? "Ocultar detalles" : "Ver detalles"
        onPulsado: raiz.cambiaRegistro()
    }
}
