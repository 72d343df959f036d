import QtQuick
import Vellora.Componentes

/// A section that needs a phone, without one.
Item {
    id: raiz

    required property bool buscando

    signal reintentar

    EstadoVacio {
        anchors.centerIn: parent
        width: parent.width - 64
        simbolo: "cable.connector.horizontal"
        titulo: raiz.buscando ? "Buscando tu iPhone…" : "No veo ningún iPhone"
        texto: "Conéctalo por cable, desbloquéalo y, si te lo pregunta,\ntoca «Confiar» en la pantalla del iPhone."
        textoDelBoton: "Buscar otra vez"
        onPulsado: raiz.reintentar()
    }
}
