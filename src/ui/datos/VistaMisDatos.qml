pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// What has been taken out of the backup: one line for each kind, with how much there is of it and since when.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property VisorDeDatos visor: raiz.programa.visor
    readonly property MisDatos datos: raiz.visor.misDatos
    readonly property bool puedeSacar: !raiz.programa.modelo.tarea.enMarcha && raiz.programa.copias.ultimaCopia !== "nunca"

    BarraDeVista {
        id: barra

        width: parent.width
        titulo: "Mis datos"
        pie: raiz.datos.cuantos > 0 ? "Lo que has sacado de la copia, en archivos que abre cualquiera" : ""
        onVuelta: raiz.visor.volver()

        Boton {
            visible: raiz.datos.cuantos > 0
            activo: raiz.puedeSacar
            texto: "Sacarlos otra vez"
            onPulsado: raiz.programa.sacarMisDatos()
        }

        Boton {
            visible: raiz.datos.cuantos > 0
            texto: "Abrir la carpeta"
            onPulsado: raiz.visor.abrirCarpeta()
        }
    }

    Lista {
        id: lista

        anchors.top: barra.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        topMargin: 14
        bottomMargin: 14
        spacing: 8
        nombre: "Mis datos"
        model: raiz.datos

        delegate: FilaDeDatos {
            x: 22
            width: lista.width - 44
            onPulsado: raiz.visor.verEntrada(index)
        }
    }

    EstadoVacio {
        anchors.centerIn: parent
        width: parent.width - 64
        visible: raiz.datos.cuantos === 0 && !raiz.datos.mirando
        simbolo: "person.text.rectangle"
        titulo: "Todavía no has sacado nada"
        texto: raiz.programa.copias.ultimaCopia === "nunca" ? "Tus mensajes, WhatsApp y contactos salen de la copia de seguridad, y todavía no hay ninguna." : "Tus mensajes, WhatsApp y contactos están dentro de la copia. Sácalos y los tendrás aquí y en su carpeta, en archivos que abre cualquiera."
        textoDelBoton: raiz.puedeSacar ? "Sacar mis datos de la copia" : ""
        onPulsado: raiz.programa.sacarMisDatos()
    }
}
