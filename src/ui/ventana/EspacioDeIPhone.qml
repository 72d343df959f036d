import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// Free space of a phone in words over a bar of what is used.
Item {
    id: raiz

    required property dispositivo iphone
    readonly property double valor: Rotulos.ocupado(raiz.iphone)

    implicitHeight: 28

    Texto {
        tipo: Texto.Menor
        text: Rotulos.libres(raiz.iphone)
    }

    Texto {
        anchors.right: parent.right
        tipo: Texto.Menor
        text: Rotulos.capacidad(raiz.iphone)
    }

    BarraDeProgreso {
        y: 20
        width: parent.width
        valor: Math.max(0, raiz.valor)
        // Hardly anything left: the bar says so.
        relleno: raiz.valor > 0.95 ? Tema.mal : Tema.acento
        Accessible.ignored: true
    }
}
