import QtQuick
import Vellora.Componentes

/// A section that needs a phone, without one.
Item {
    id: raiz

    required property bool buscando
    /// Which phones are on the cable and do not answer; empty when there is none.
    required property string callados

    signal reintentar

    EstadoVacio {
        anchors.centerIn: parent
        width: parent.width - 64
        simbolo: "cable.connector.horizontal"
        titulo: raiz.buscando ? "Buscando tu iPhone…" : raiz.callados !== "" ? "Tu iPhone no contesta" : "No veo ningún iPhone"
        texto: raiz.callados !== "" ? raiz.callados : "Conéctalo por cable, desbloquéalo y, si te lo pregunta,\ntoca «Confiar» en la pantalla del iPhone."
        textoDelBoton: "Buscar otra vez"
        onPulsado: raiz.reintentar()
    }
}
