import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The name of the chat in view, and what can be done with it.
Item {
    id: raiz

    required property Conversaciones conversaciones
    required property string cuantos
    readonly property bool lista: !raiz.conversaciones.cargando

    implicitHeight: 60

    GuardarComo {
        id: guardarTexto

        titulo: "Guardar la conversación"
        filtro: "Texto (*.txt)"
        extension: "txt"
        onElegido: fichero => raiz.conversaciones.guardarChat(fichero)
    }

    GuardarComo {
        id: guardarPdf

        titulo: "Guardar el PDF"
        filtro: "PDF (*.pdf)"
        extension: "pdf"
        onElegido: fichero => raiz.conversaciones.guardarPdf(fichero)
    }

    Connections {
        target: raiz.conversaciones

        function onPdfHecho() {
            guardarPdf.abrir(raiz.conversaciones.nombre + ".pdf");
        }
    }

    Texto {
        id: nombre

        x: 22
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, (botones.x - x) * 0.6)
        elide: Text.ElideRight
        maximumLineCount: 1
        tipo: Texto.Seccion
        text: raiz.conversaciones.nombre !== "" ? raiz.conversaciones.nombre : "Sin nombre"
        Accessible.role: Accessible.Heading
    }

    Texto {
        anchors.left: nombre.right
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(0, botones.x - x - 12)
        maximumLineCount: 2
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        tipo: Texto.Menor
        text: raiz.conversaciones.mensaje !== "" ? raiz.conversaciones.mensaje : raiz.cuantos
    }

    Row {
        id: botones

        anchors.right: parent.right
        anchors.rightMargin: 22
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        Boton {
            activo: raiz.lista
            texto: "Copiar"
            ayuda: "Copia la conversación entera"
            onPulsado: raiz.conversaciones.copiarChat()
        }

        Boton {
            activo: raiz.lista
            texto: "Guardar"
            ayuda: "Guarda la conversación como texto"
            onPulsado: guardarTexto.abrir(raiz.conversaciones.nombre + ".txt")
        }

        Boton {
            activo: raiz.lista && !raiz.conversaciones.haciendoPdf
            clase: Boton.Principal
            texto: raiz.conversaciones.haciendoPdf ? "Haciéndolo…" : "PDF"
            ayuda: "Guarda la conversación como PDF"
            onPulsado: raiz.conversaciones.exportarPDF()
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Tema.borde
    }
}
