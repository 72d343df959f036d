import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The header's words when no phone is connected: whose data is shown, and the choice where there are several.
Row {
    id: raiz

    required property Modelo modelo
    readonly property var carpetas: raiz.modelo.carpetasConDatos
    readonly property string deQuien: raiz.modelo.datosDe

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
        width: Math.max(0, Math.min(implicitWidth, parent.width - x - (otro.visible ? otro.width + parent.spacing : 0)))
        tipo: Texto.Menor
        maximumLineCount: 2
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        text: "· esto funciona con lo que ya está en el Mac" + (raiz.deQuien !== "" ? "\nDatos de «" + raiz.deQuien + "»" : raiz.carpetas.length > 1 ? "\nHay datos de varios iPhone: elige de cuál quieres verlos" : "")
    }

    Boton {
        id: otro

        anchors.verticalCenter: parent.verticalCenter
        visible: raiz.carpetas.length > 1
        clase: Boton.Callado
        texto: raiz.deQuien === "" ? "Ver los de «" + raiz.carpetas[0] + "»" : "Ver los de otro iPhone"
        onPulsado: raiz.modelo.elegirDatosDe(raiz.carpetas[(raiz.carpetas.indexOf(raiz.deQuien) + 1) % raiz.carpetas.length])
    }
}
