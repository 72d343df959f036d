import QtQuick
import Vellora.Componentes

/// One thing found: what it is, where, and the words around it.
BotonBase {
    id: raiz

    required property int index
    required property string tipo
    required property string titulo
    required property string extracto
    required property string icono

    nombre: raiz.tipo + ", " + raiz.titulo + ": " + raiz.extracto
    radio: 10
    implicitHeight: 56

    Tarjeta {
        anchors.fill: parent
        radius: 10
        border.color: raiz.encima ? Tema.acento : Tema.borde
    }

    Icono {
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        lado: 18
        simbolo: raiz.icono
        color: Tema.acento
    }

    Column {
        x: 50
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - x - insignia.width - 30
        spacing: 1

        Texto {
            width: parent.width
            elide: Text.ElideRight
            maximumLineCount: 1
            font.weight: Font.DemiBold
            text: raiz.titulo !== "" ? raiz.titulo : "Sin nombre"
            Accessible.ignored: true
        }

        Texto {
            width: parent.width
            elide: Text.ElideRight
            maximumLineCount: 1
            tipo: Texto.Menor
            text: raiz.extracto
            Accessible.ignored: true
        }
    }

    Insignia {
        id: insignia

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        text: raiz.tipo
    }
}
