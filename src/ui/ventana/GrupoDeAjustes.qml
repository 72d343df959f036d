import QtQuick
import Vellora.Componentes

/// A card of settings under its heading.
Column {
    id: raiz

    required property string titulo
    default property alias contenido: interior.data

    spacing: 8

    Texto {
        tipo: Texto.Seccion
        text: raiz.titulo
        Accessible.role: Accessible.Heading
    }

    Tarjeta {
        width: parent.width
        implicitHeight: interior.implicitHeight + 32
        height: implicitHeight

        Column {
            id: interior

            x: 20
            y: 16
            width: parent.width - 40
            spacing: 10
        }
    }
}
