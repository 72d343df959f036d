import QtQuick
import Vellora.Componentes

/// The frame of a section: padded, scrolling, with its title.
Desplazable {
    id: raiz

    required property string titulo
    default property alias contenido: columna.data
    readonly property real anchoUtil: columna.width
    /// Large buttons and cards stand in as many columns as are comfortable.
    readonly property int columnas: raiz.anchoUtil >= 860 ? 4 : raiz.anchoUtil >= 600 ? 3 : 2

    contentHeight: columna.y + columna.implicitHeight + 28

    Column {
        id: columna

        x: 28
        y: 24
        width: Math.min(raiz.width - 56, 1640)
        spacing: 16

        Texto {
            tipo: Texto.Titulo
            text: raiz.titulo
            Accessible.role: Accessible.Heading
        }
    }
}
