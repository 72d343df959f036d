import QtQuick
import Vellora.Componentes

/// Where `Ayudas` is drawn: made for each text and laid over the whole window.
Item {
    id: raiz

    Rectangle {
        readonly property real anchoMaximo: 280
        readonly property point lugar: Ayudas.sobre ? Ayudas.sobre.mapToItem(raiz, 0, 0) : Qt.point(0, 0)
        readonly property real centrado: lugar.x + ((Ayudas.sobre?.width ?? 0) - width) / 2
        readonly property real debajo: lugar.y + (Ayudas.sobre?.height ?? 0) + 6

        x: Math.round(Math.max(8, Math.min(centrado, raiz.width - width - 8)))
        y: Math.round(debajo + height > raiz.height ? lugar.y - height - 6 : debajo)
        width: Math.min(letrero.implicitWidth, anchoMaximo) + 20
        height: letrero.height + 12
        radius: 6
        color: Tema.oscuro ? "#3A404A" : "#23272E"

        Texto {
            id: letrero

            x: 10
            y: 6
            width: parent.width - 20
            tipo: Texto.Menor
            color: "#FFFFFF"
            wrapMode: Text.Wrap
            text: Ayudas.texto
            Accessible.ignored: true
        }
    }
}
