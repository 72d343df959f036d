import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The program's window.
Window {
    id: raiz

    required property Programa programa
    /// What must be installed before anything works; empty when all is there.
    required property list<string> falta
    property bool saliendo: false

    width: 1280
    height: 820
    minimumWidth: 960
    minimumHeight: 640
    title: "Vellora"
    color: Tema.fondo

    function preguntaAlSalir() {
        vista.preguntaAlSalir();
    }

    onClosing: cierre => {
        const seQueda = raiz.programa.ajustes.seguirEnLaBarra && !raiz.saliendo;
        cierre.accepted = !seQueda && (raiz.saliendo || !raiz.programa.modelo.tarea.enMarcha);
        if (seQueda)
            raiz.hide();
        else if (!cierre.accepted)
            vista.preguntaAlSalir();
    }

    VistaPrincipal {
        id: vista

        anchors.fill: parent
        programa: raiz.programa
        falta: raiz.falta
        focus: true
        onSale: {
            raiz.saliendo = true;
            raiz.close();
        }
    }
}
