pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// What everything that can be pressed shares: pointer, keyboard, focus ring, help and accessible name.
Item {
    id: raiz

    property string nombre
    property string ayuda
    property bool activo: true
    property real radio: 8
    readonly property alias encima: raton.containsMouse
    readonly property alias apretado: raton.pressed

    signal pulsado

    function pulsa() {
        if (raiz.activo)
            raiz.pulsado();
    }

    enabled: raiz.activo
    activeFocusOnTab: raiz.activo
    onActiveFocusChanged: {
        anillo.porRaton = raton.pressed;
        if (!raiz.activeFocus)
            Ayudas.quita(raiz);
        else if (!raiz.apretado)
            Ayudas.muestra(raiz, raiz.ayuda);
    }
    Component.onDestruction: Ayudas.quita(raiz)
    onVisibleChanged: if (!visible) Ayudas.quita(raiz)

    Accessible.role: Accessible.Button
    Accessible.name: raiz.nombre
    Accessible.description: raiz.ayuda
    Accessible.focusable: raiz.activo
    Accessible.onPressAction: raiz.pulsa()
    Keys.onReturnPressed: raiz.pulsa()
    Keys.onEnterPressed: raiz.pulsa()
    Keys.onSpacePressed: raiz.pulsa()

    MouseArea {
        id: raton

        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onPressed: raiz.forceActiveFocus(Qt.MouseFocusReason)
        onClicked: {
            Ayudas.quita(raiz);
            raiz.pulsa();
        }
        onContainsMouseChanged: containsMouse ? Ayudas.muestra(raiz, raiz.ayuda) : Ayudas.quita(raiz)
    }

    // The ring is for those who come by keyboard, so a press does not show it.
    Cargador {
        id: anillo

        property bool porRaton: false

        anchors.fill: parent
        anchors.margins: -2
        z: 1
        activo: raiz.activeFocus && !anillo.porRaton

        Rectangle {
            color: "transparent"
            radius: raiz.radio + 2
            border.width: 2
            border.color: Tema.acento
        }
    }
}
