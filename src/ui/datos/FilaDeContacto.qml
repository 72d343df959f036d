import QtQuick
import Vellora.Componentes
import Vellora.Datos

/// One person in the list.
BotonBase {
    id: raiz

    required property int index
    required property string persona
    required property string detalle
    required property string foto
    property bool elegida: false

    nombre: raiz.detalle !== "" ? raiz.persona + ", " + raiz.detalle : raiz.persona
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

    Retrato {
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        height: 36
        nombre: raiz.persona
        foto: raiz.foto
    }

    Column {
        x: 58
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 66

        Texto {
            width: parent.width
            elide: Text.ElideRight
            maximumLineCount: 1
            font.weight: raiz.elegida ? Font.DemiBold : Font.Normal
            color: raiz.elegida ? Tema.acentoTexto : Tema.texto
            text: raiz.persona
            Accessible.ignored: true
        }

        Texto {
            width: parent.width
            visible: text !== ""
            elide: Text.ElideRight
            maximumLineCount: 1
            tipo: Texto.Menor
            text: raiz.detalle
            Accessible.ignored: true
        }
    }
}
