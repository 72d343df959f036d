import QtQuick
import Vellora.Componentes

/// One backup among those to choose from.
BotonBase {
    id: raiz

    required property string titulo
    required property string texto

    nombre: raiz.titulo
    radio: 12
    implicitHeight: letras.height + 24
    Accessible.description: raiz.texto

    Tarjeta {
        anchors.fill: parent
        border.color: raiz.encima && raiz.activo ? Tema.acento : Tema.borde
    }

    Icono {
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        lado: 20
        simbolo: "externaldrive.badge.timemachine"
        color: raiz.activo ? Tema.acento : Tema.tenue
    }

    Column {
        id: letras

        x: 52
        y: 12
        width: parent.width - x - 16
        spacing: 2

        Texto {
            width: parent.width
            font.weight: Font.DemiBold
            color: raiz.activo ? Tema.texto : Tema.suave
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
