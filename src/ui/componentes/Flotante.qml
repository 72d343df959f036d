import QtQuick
import Vellora.Componentes

/// A panel that floats beside what opened it. Escape or a press outside closes it; the keyboard stays inside, because
/// the window behind is disabled while it is open.
FocusScope {
    id: raiz

    default property alias contenido: interior.data
    property real anchoDelPanel: 380
    property real altoDelPanel: interior.childrenRect.height
    property point lugar
    property string nombre

    signal cerrado

    focus: true
    Keys.onEscapePressed: raiz.cerrado()
    Component.onCompleted: raiz.forceActiveFocus()

    MouseArea {
        anchors.fill: parent
        onClicked: raiz.cerrado()
        onWheel: wheel => wheel.accepted = true
    }

    Rectangle {
        x: panel.x - 1
        y: panel.y + 3
        width: panel.width + 2
        height: panel.height
        radius: 13
        color: "#000000"
        opacity: Tema.oscuro ? 0.35 : 0.08
    }

    Tarjeta {
        id: panel

        x: Math.max(8, Math.min(raiz.lugar.x, raiz.width - width - 8))
        y: raiz.lugar.y
        width: raiz.anchoDelPanel
        height: Math.min(raiz.altoDelPanel, raiz.height - y - 12)
        Accessible.role: Accessible.PopupMenu
        Accessible.name: raiz.nombre

        MouseArea {
            anchors.fill: parent
        }

        Item {
            id: interior

            anchors.fill: parent
        }
    }
}
