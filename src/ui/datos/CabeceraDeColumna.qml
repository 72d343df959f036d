import QtQuick
import Vellora.Componentes

/// The heading of a column, which sorts by it.
BotonBase {
    id: raiz

    required property int index
    required property string modelData
    property bool ordenada: false
    property bool alReves: false

    nombre: raiz.modelData + (raiz.ordenada ? (raiz.alReves ? ", de mayor a menor" : ", de menor a mayor") : "")
    ayuda: "Ordenar por " + raiz.modelData
    Accessible.role: Accessible.ColumnHeader

    Texto {
        id: titulo

        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, parent.width - 24)
        elide: Text.ElideRight
        tipo: Texto.Menor
        font.weight: Font.DemiBold
        color: raiz.encima || raiz.ordenada ? Tema.texto : Tema.suave
        text: raiz.modelData
        Accessible.ignored: true
    }

    Icono {
        anchors.left: titulo.right
        anchors.leftMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        visible: raiz.ordenada
        lado: 10
        simbolo: raiz.alReves ? "chevron.down" : "chevron.up"
        color: Tema.texto
    }
}
