pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// The phone's address book: everybody by name, and the card of the one that is chosen.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property Contactos contactos: raiz.programa.contactos
    readonly property bool hayCopia: raiz.programa.copias.ultimaCopia !== "nunca"

    Component.onCompleted: if (!raiz.contactos.yaMire && raiz.hayCopia) raiz.contactos.leer()

    ListaDeContactos {
        id: lateral

        visible: !raiz.contactos.vacia
        width: 300
        height: parent.height
        contactos: raiz.contactos
        focus: true
    }

    Item {
        anchors.left: lateral.right
        anchors.right: parent.right
        height: parent.height
        visible: !raiz.contactos.vacia

        FichaDeContacto {
            anchors.fill: parent
            visible: raiz.contactos.elegido >= 0
            contactos: raiz.contactos
            onExporta: formato => lateral.exporta(formato)
        }

        EstadoVacio {
            anchors.centerIn: parent
            width: parent.width - 48
            visible: raiz.contactos.elegido < 0
            simbolo: "person.crop.circle"
            titulo: "Elige un contacto"
            texto: raiz.contactos.aviso
        }
    }

    EstadoVacio {
        anchors.centerIn: parent
        width: parent.width - 64
        visible: raiz.contactos.vacia
        simbolo: "person.crop.circle"
        titulo: raiz.contactos.esperando ? "Los leeré cuando acabe lo que está en marcha" : raiz.contactos.cargando ? "Leyendo tus contactos…" : raiz.hayCopia ? "No he encontrado contactos" : "Tus contactos salen de la copia de seguridad"
        texto: raiz.contactos.cargando ? "" : raiz.hayCopia ? raiz.contactos.motivo : "Y todavía no hay ninguna. Hazla en «Copias y datos»."
        textoDelBoton: raiz.hayCopia && !raiz.contactos.cargando ? "Leer mis contactos" : ""
        onPulsado: raiz.contactos.leer()
    }
}
