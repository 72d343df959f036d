import QtQuick
import Vellora.Componentes

/// One line of a menu. Up and down move among those that can be chosen.
BotonBase {
    id: raiz

    required property string titulo
    property bool porVenir: false

    nombre: raiz.porVenir ? raiz.titulo + ", todavía no disponible" : raiz.titulo
    implicitHeight: 32
    Accessible.role: Accessible.MenuItem
    Keys.onDownPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Rectangle {
        anchors.fill: parent
        radius: 8
        color: Tema.fondo
        visible: raiz.encima && raiz.activo
    }

    Texto {
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 24
        elide: Text.ElideRight
        color: raiz.activo ? Tema.texto : Tema.suave
        opacity: raiz.activo ? 1 : 0.75
        text: raiz.titulo
        Accessible.ignored: true
    }
}
