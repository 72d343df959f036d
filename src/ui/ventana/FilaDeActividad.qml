import QtQuick
import Vellora.Componentes

/// One job of the journal.
Item {
    id: raiz

    required property int index
    required property string titulo
    required property string detalle
    required property string estado
    required property string icono
    required property string cuando
    required property string duracion
    required property string carpeta

    signal pideCarpeta

    implicitHeight: letras.height + 24
    Accessible.role: Accessible.ListItem
    Accessible.name: raiz.titulo + ". " + raiz.detalle + ". " + momento.text

    Rectangle {
        visible: raiz.index > 0
        x: 20
        width: parent.width - 40
        height: 1
        color: Tema.borde
    }

    Icono {
        x: 20
        y: 14
        lado: 16
        simbolo: raiz.icono
        color: ({
                enMarcha: Tema.acento,
                bien: Tema.bien,
                mal: Tema.mal
            })[raiz.estado] ?? Tema.suave
    }

    Column {
        id: letras

        x: 48
        y: 12
        width: (abrir.visible ? abrir.x - 8 : parent.width - 20) - x
        spacing: 3

        Texto {
            width: parent.width
            font.weight: Font.DemiBold
            wrapMode: Text.Wrap
            text: raiz.titulo
            Accessible.ignored: true
        }

        Texto {
            width: parent.width
            visible: text !== ""
            color: Tema.suave
            font.pixelSize: 13
            wrapMode: Text.Wrap
            text: raiz.detalle
            Accessible.ignored: true
        }

        Texto {
            id: momento

            width: parent.width
            tipo: Texto.Menor
            wrapMode: Text.Wrap
            text: raiz.duracion === "" ? raiz.cuando : raiz.cuando + " · " + raiz.duracion
            Accessible.ignored: true
        }
    }

    Boton {
        id: abrir

        x: parent.width - width - 12
        y: 8
        visible: raiz.carpeta !== ""
        clase: Boton.Callado
        texto: "Abrir"
        nombre: "Abrir la carpeta de " + raiz.titulo
        onPulsado: raiz.pideCarpeta()
    }
}
