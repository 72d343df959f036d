import QtQuick
import Vellora.Componentes

/// One of the two ways to begin with a new phone.
BotonBase {
    id: raiz

    required property string simbolo
    required property string titulo
    required property string texto

    nombre: raiz.titulo
    radio: 12
    implicitHeight: letras.height + 32
    Accessible.description: raiz.texto

    Tarjeta {
        anchors.fill: parent
        border.color: raiz.encima ? Tema.acento : Tema.borde
    }

    Rectangle {
        x: 16
        y: 16
        width: 40
        height: 40
        radius: 10
        color: Tema.acentoSuave

        Icono {
            anchors.centerIn: parent
            lado: 20
            simbolo: raiz.simbolo
            color: Tema.acento
        }
    }

    Column {
        id: letras

        x: 72
        y: 16
        width: parent.width - x - 16
        spacing: 4

        Texto {
            width: parent.width
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            text: raiz.titulo
            Accessible.ignored: true
        }

        Texto {
            width: parent.width
            color: Tema.suave
            font.pixelSize: 13
            wrapMode: Text.Wrap
            text: raiz.texto
            Accessible.ignored: true
        }
    }
}
