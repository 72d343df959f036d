import QtQuick
import Vellora.Componentes

/// The whole window while a tool is missing.
Item {
    id: raiz

    required property string falta

    EstadoVacio {
        anchors.centerIn: parent
        width: parent.width - 96
        anchoDelTexto: 600
        simbolo: "wrench.and.screwdriver"
        titulo: "Falta una pieza"
        texto: "Esta app se apoya en " + raiz.falta + ", que no encuentro en el Mac.\nDíselo a Claude y te lo deja instalado."
    }
}
