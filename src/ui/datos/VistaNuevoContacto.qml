import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// A person for the computer's address book: a new one, or the chosen one with other data.
Hoja {
    id: raiz

    required property Contactos contactos
    readonly property bool editando: raiz.contactos.hoja === Contactos.Editar
    readonly property bool valido: nombre.texto.trim() !== "" || empresa.texto.trim() !== ""

    function guarda() {
        if (raiz.valido && !raiz.contactos.guardando)
            raiz.contactos.guardar(raiz.editando, nombre.texto, apellidos.texto, empresa.texto, telefono.texto, correo.texto);
    }

    nombre: titulo.text
    ancho: 520

    Column {
        width: parent.width
        spacing: 14

        Texto {
            id: titulo

            width: parent.width - 32
            tipo: Texto.Titulo
            font.pixelSize: 20
            text: raiz.editando ? "Editar contacto" : "Contacto nuevo"
            Accessible.role: Accessible.Heading
        }

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.Wrap
            text: raiz.editando ? "Se cambia en la agenda de este Mac. Con los Contactos de iCloud encendidos, el cambio llega al iPhone en un rato. Por cable directo al iPhone, Apple no lo permite." : "Se crea en la agenda de este Mac. Si tienes los Contactos de iCloud encendidos en los dos sitios, en un rato lo verás también en el iPhone."
        }

        CampoDeTexto {
            id: nombre

            width: parent.width
            secreto: false
            rotulo: "Nombre"
            focus: true
            texto: raiz.editando ? raiz.contactos.ficha.nombre : ""
            onAceptado: raiz.guarda()
            Component.onCompleted: forceActiveFocus()
        }

        CampoDeTexto {
            id: apellidos

            width: parent.width
            secreto: false
            rotulo: "Apellidos"
            texto: raiz.editando ? raiz.contactos.ficha.apellidos : ""
            onAceptado: raiz.guarda()
        }

        CampoDeTexto {
            id: empresa

            width: parent.width
            secreto: false
            rotulo: "Empresa"
            texto: raiz.editando ? raiz.contactos.ficha.empresa : ""
            onAceptado: raiz.guarda()
        }

        CampoDeTexto {
            id: telefono

            width: parent.width
            secreto: false
            rotulo: "Teléfono"
            pista: "+34…"
            texto: raiz.editando && raiz.contactos.ficha.telefonos.length > 0 ? raiz.contactos.ficha.telefonos[0] : ""
            onAceptado: raiz.guarda()
        }

        CampoDeTexto {
            id: correo

            width: parent.width
            secreto: false
            rotulo: "Correo"
            texto: raiz.editando && raiz.contactos.ficha.correos.length > 0 ? raiz.contactos.ficha.correos[0] : ""
            onAceptado: raiz.guarda()
        }

        Tira {
            width: parent.width
            clase: Tira.Mal
            texto: raiz.contactos.falloAlGuardar
        }

        Row {
            anchors.right: parent.right
            spacing: 8

            Boton {
                texto: "Cancelar"
                onPulsado: raiz.cerrada()
            }

            Boton {
                clase: Boton.Principal
                activo: raiz.valido && !raiz.contactos.guardando
                texto: raiz.contactos.guardando ? "Guardando…" : "Guardar"
                onPulsado: raiz.guarda()
            }
        }
    }
}
