import QtQuick
import Vellora.Componentes

/// Where `Ayudas` is drawn: one for the window, above everything.
Rectangle {
    id: raiz

    readonly property real anchoMaximo: 280

    function coloca() {
        const control = Ayudas.sobre;
        const lugar = control.mapToItem(raiz.parent, 0, 0);
        const centrado = lugar.x + (control.width - raiz.width) / 2;
        raiz.x = Math.round(Math.max(8, Math.min(centrado, raiz.parent.width - raiz.width - 8)));
        const debajo = lugar.y + control.height + 6;
        raiz.y = Math.round(debajo + raiz.height > raiz.parent.height ? lugar.y - raiz.height - 6 : debajo);
    }

    visible: Ayudas.visible
    onVisibleChanged: if (visible && Ayudas.sobre) coloca()
    width: Math.min(letrero.implicitWidth, raiz.anchoMaximo) + 20
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
