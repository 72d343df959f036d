import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// Shows where the phone's photos are kept, and changes it.
Tarjeta {
    id: raiz

    required property Fotos fotos

    implicitHeight: Math.max(textos.height, botones.height) + 28
    height: implicitHeight

    ElegirCarpeta {
        id: dialogo

        titulo: "¿Dónde quieres guardar las fotos de este iPhone?"
        textoDeAceptar: "Usar esta carpeta"
        onElegida: carpeta => raiz.fotos.ponCarpeta(carpeta)
    }

    Icono {
        id: dibujo

        x: 16
        anchors.verticalCenter: parent.verticalCenter
        lado: 20
        simbolo: "folder"
        color: Tema.acento
    }

    Column {
        id: textos

        anchors.left: dibujo.right
        anchors.leftMargin: 14
        anchors.right: botones.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Texto {
            width: parent.width
            tipo: Texto.Menor
            wrapMode: Text.Wrap
            text: "Las fotos de este iPhone se guardan en:"
        }

        Texto {
            width: parent.width
            elide: Text.ElideMiddle
            text: raiz.fotos.carpeta
        }
    }

    Row {
        id: botones

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8

        Boton {
            visible: !raiz.fotos.carpetaEsLaDeSiempre
            texto: "Por defecto"
            onPulsado: raiz.fotos.volverACarpetaPorDefecto()
        }

        Boton {
            texto: "Cambiar"
            onPulsado: dialogo.abrir(raiz.fotos.carpeta)
        }
    }
}
