pragma Singleton
import QtQuick

/// The one help text that the window shows beside the control under the pointer or in focus.
QtObject {
    id: raiz

    property Item sobre: null
    property string texto
    readonly property bool visible: raiz.sobre !== null && raiz.texto !== "" && !raiz.espera.running

    readonly property Timer espera: Timer {
        interval: 500
    }

    function muestra(control: Item, texto: string) {
        if (texto === "")
            return;
        raiz.espera.restart();
        raiz.texto = texto;
        raiz.sobre = control;
    }

    function quita(control: Item) {
        if (raiz.sobre !== control)
            return;
        raiz.sobre = null;
        raiz.espera.stop();
    }
}
