import QtQuick
import Vellora.Componentes

/// One kind of what has been taken out.
BotonBase {
    id: raiz

    required property int index
    required property string titulo
    required property string icono
    required property string cuenta
    required property string tamano
    required property string fecha
    required property string verbo

    nombre: raiz.titulo + ", " + raiz.cuenta + ". " + raiz.verbo
    radio: 12
    implicitHeight: 60

    Tarjeta {
        anchors.fill: parent
        border.color: raiz.encima ? Tema.acento : Tema.borde
    }

    Rectangle {
        id: cuadro

        x: 14
        anchors.verticalCenter: parent.verticalCenter
        width: 34
        height: 34
        radius: 8
        color: Tema.acentoSuave

        Icono {
            anchors.centerIn: parent
            lado: 17
            simbolo: raiz.icono
            color: Tema.acento
        }
    }

    Column {
        anchors.left: cuadro.right
        anchors.leftMargin: 14
        anchors.right: verbo.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Texto {
            width: parent.width
            elide: Text.ElideRight
            font.weight: Font.DemiBold
            text: raiz.titulo
            Accessible.ignored: true
        }

        Texto {
            width: parent.width
            elide: Text.ElideRight
            tipo: Texto.Menor
            text: raiz.cuenta + (raiz.tamano !== "" ? " · " + raiz.tamano : "") + " · sacado el " + raiz.fecha
            Accessible.ignored: true
        }
    }

    Texto {
        id: verbo

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        color: Tema.acentoTexto
        font.weight: Font.Medium
        text: raiz.verbo
        Accessible.ignored: true
    }
}
