import QtQuick
import Vellora.Componentes

/// One chat in the list.
BotonBase {
    id: raiz

    required property int index
    required property string chat
    required property string inicial
    property bool elegida: false

    nombre: raiz.chat !== "" ? raiz.chat : "Sin nombre"
    height: 52
    Accessible.role: Accessible.ListItem
    Accessible.selected: raiz.elegida
    Keys.onDownPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

    Rectangle {
        anchors.fill: parent
        radius: 8
        color: raiz.elegida ? Tema.acentoSuave : Tema.texto
        opacity: raiz.elegida ? 1 : raiz.encima ? 0.05 : 0
    }

    Rectangle {
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        width: 34
        height: 34
        radius: 17
        color: Tema.acentoSuave

        Texto {
            anchors.centerIn: parent
            font.weight: Font.DemiBold
            color: Tema.acentoTexto
            text: raiz.inicial
            Accessible.ignored: true
        }
    }

    Texto {
        x: 56
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 66
        elide: Text.ElideRight
        maximumLineCount: 1
        font.weight: raiz.elegida ? Font.DemiBold : Font.Normal
        color: raiz.elegida ? Tema.acentoTexto : Tema.texto
        text: raiz.nombre
        Accessible.ignored: true
    }
}
