import QtQuick
import Vellora.Componentes

/// What can be done with a job: stop it while it runs; afterwards its ending, its folder and the closing cross.
Row {
    id: raiz

    required property bool enMarcha
    required property bool bien
    required property bool conCarpeta

    signal pideCancelar
    signal pideCerrar
    signal pideCarpeta

    spacing: 10

    Boton {
        visible: raiz.enMarcha
        texto: "Cancelar"
        onPulsado: raiz.pideCancelar()
    }

    Row {
        anchors.verticalCenter: parent.verticalCenter
        visible: !raiz.enMarcha
        spacing: 7

        Icono {
            anchors.verticalCenter: parent.verticalCenter
            simbolo: raiz.bien ? "checkmark.circle.fill" : "exclamationmark.triangle.fill"
            color: raiz.bien ? Tema.bien : Tema.mal
        }

        Texto {
            anchors.verticalCenter: parent.verticalCenter
            font.weight: Font.Medium
            text: raiz.bien ? "Terminado" : "No se completó"
        }
    }

    Boton {
        visible: !raiz.enMarcha && raiz.conCarpeta
        texto: "Abrir la carpeta"
        onPulsado: raiz.pideCarpeta()
    }

    BotonDeSimbolo {
        visible: !raiz.enMarcha
        simbolo: "xmark.circle.fill"
        nombre: "Cerrar este aviso"
        ayuda: "Cerrar este aviso"
        onPulsado: raiz.pideCerrar()
    }
}
