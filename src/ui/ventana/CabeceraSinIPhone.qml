import QtQuick
import Vellora.Componentes

/// The header's words when no phone is connected.
Row {
    spacing: 14

    Icono {
        anchors.verticalCenter: parent.verticalCenter
        lado: 24
        simbolo: "cable.connector.horizontal"
        color: Tema.suave
    }

    Texto {
        anchors.verticalCenter: parent.verticalCenter
        tipo: Texto.Seccion
        text: "Sin iPhone conectado"
    }

    Texto {
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(0, Math.min(implicitWidth, parent.width - x))
        tipo: Texto.Menor
        maximumLineCount: 2
        wrapMode: Text.Wrap
        text: "· esto funciona con lo que ya está en el Mac"
    }
}
