import QtQuick
import Vellora.Componentes

/// A value between two, by dragging or by the arrow keys.
FocusScope {
    id: raiz

    property string nombre
    property string ayuda
    property real desde: 0
    property real hasta: 1
    property real paso: (raiz.hasta - raiz.desde) / 10
    property real valor: raiz.desde
    readonly property real parte: (raiz.valor - raiz.desde) / (raiz.hasta - raiz.desde)

    signal movido(valor: real)

    function lleva(a: real) {
        raiz.movido(Math.max(raiz.desde, Math.min(raiz.hasta, a)));
    }

    implicitWidth: 120
    implicitHeight: 32
    activeFocusOnTab: true
    Accessible.role: Accessible.Slider
    Accessible.name: raiz.nombre
    Accessible.description: raiz.ayuda
    Accessible.focusable: true
    Accessible.onIncreaseAction: raiz.lleva(raiz.valor + raiz.paso)
    Accessible.onDecreaseAction: raiz.lleva(raiz.valor - raiz.paso)
    Keys.onLeftPressed: raiz.lleva(raiz.valor - raiz.paso)
    Keys.onRightPressed: raiz.lleva(raiz.valor + raiz.paso)
    onActiveFocusChanged: activeFocus && !dedo.pressed ? Ayudas.muestra(raiz, raiz.ayuda) : Ayudas.quita(raiz)
    Component.onDestruction: Ayudas.quita(raiz)

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        height: 4
        radius: 2
        color: Tema.borde

        Rectangle {
            width: asa.x + asa.width / 2
            height: parent.height
            radius: 2
            color: Tema.acento
        }
    }

    Rectangle {
        id: asa

        x: raiz.parte * (raiz.width - width)
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 8
        color: Tema.tarjeta
        border.width: raiz.activeFocus && !dedo.pressed ? 3 : 2
        border.color: Tema.acento
    }

    MouseArea {
        id: dedo

        function sitio(x: real): real {
            return raiz.desde + (x - asa.width / 2) / Math.max(1, raiz.width - asa.width) * (raiz.hasta - raiz.desde);
        }

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: raton => {
            raiz.forceActiveFocus(Qt.MouseFocusReason);
            raiz.lleva(dedo.sitio(raton.x));
        }
        onPositionChanged: raton => {
            if (dedo.pressed)
                raiz.lleva(dedo.sitio(raton.x));
        }
        onContainsMouseChanged: containsMouse ? Ayudas.muestra(raiz, raiz.ayuda) : Ayudas.quita(raiz)
    }
}
