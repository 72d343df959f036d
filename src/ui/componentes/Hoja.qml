pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// A sheet over the dimmed window. Escape closes it; the keyboard stays inside, because the window behind is disabled.
/// Whoever fills it gives the focus to a control that destroys nothing.
FocusScope {
    id: raiz

    default property alias contenido: interior.data
    property string nombre
    property real ancho: 560

    signal cerrada

    focus: true
    Keys.onEscapePressed: raiz.cerrada()
    Component.onCompleted: raiz.forceActiveFocus()

    Rectangle {
        anchors.fill: parent
        color: Tema.velo

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onWheel: wheel => wheel.accepted = true
        }
    }

    // A soft shadow out of a few faint layers: the software renderer draws no blurs.
    Repeater {
        model: 8

        Rectangle {
            required property int index

            anchors.fill: hoja
            anchors.margins: -2 * index
            anchors.topMargin: 10 - 2 * index
            anchors.bottomMargin: -10 - 2 * index
            radius: 16 + 2 * index
            color: "#000000"
            opacity: Tema.oscuro ? 0.06 : 0.022
        }
    }

    Rectangle {
        id: hoja

        anchors.centerIn: parent
        width: Math.min(raiz.ancho, raiz.width - 48)
        height: Math.min(interior.childrenRect.height + 56, raiz.height - 48)
        radius: 16
        color: Tema.tarjeta
        border.width: 1
        border.color: Tema.borde
        Accessible.role: Accessible.Dialog
        Accessible.name: raiz.nombre

        NumberAnimation on anchors.verticalCenterOffset {
            from: 24
            to: 0
            duration: 160
            easing.type: Easing.OutCubic
        }

        Desplazable {
            anchors.fill: parent
            anchors.margins: 28
            anchors.rightMargin: 10 // its bar stands beside the words, not on them
            contentHeight: interior.childrenRect.height

            Item {
                id: interior

                width: hoja.width - 56
            }
        }
    }

    BotonDeSimbolo {
        anchors.top: hoja.top
        anchors.right: hoja.right
        anchors.margins: 12
        lado: 14
        simbolo: "xmark"
        nombre: "Cerrar"
        ayuda: "Cerrar"
        onPulsado: raiz.cerrada()
    }
}
