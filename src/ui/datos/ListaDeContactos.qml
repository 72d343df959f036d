pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// Everybody by name, a box to find somebody, and what is done with all of them.
FocusScope {
    id: raiz

    required property Contactos contactos

    /// Asks where to keep everybody, as cards or as a table.
    function exporta(formato: int) {
        if (formato === Contactos.VCard)
            guardarTarjetas.abrir("Contactos del iPhone.vcf");
        else
            guardarHoja.abrir("Contactos del iPhone.csv");
    }

    GuardarComo {
        id: guardarTarjetas

        titulo: "Guardar todos los contactos"
        filtro: "Tarjetas de contacto (*.vcf)"
        extension: "vcf"
        onElegido: fichero => raiz.contactos.exportar(Contactos.VCard, fichero)
    }

    GuardarComo {
        id: guardarHoja

        titulo: "Guardar todos los contactos"
        filtro: "Hoja de cálculo (*.csv)"
        extension: "csv"
        onElegido: fichero => raiz.contactos.exportar(Contactos.Hoja, fichero)
    }

    Row {
        id: cabeza

        x: 16
        y: 14
        width: parent.width - 28
        height: 32
        spacing: 4

        Texto {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - 104
            elide: Text.ElideRight
            tipo: Texto.Seccion
            text: "Contactos"
            Accessible.role: Accessible.Heading
        }

        BotonDeSimbolo {
            simbolo: "person.badge.plus"
            nombre: "Contacto nuevo"
            ayuda: "Crear un contacto en la agenda de este Mac"
            onPulsado: raiz.contactos.abrirHoja(Contactos.Nuevo)
        }

        BotonDeSimbolo {
            simbolo: "square.and.arrow.up"
            nombre: "Guardar todos (vCard)"
            ayuda: "Guardar todos (vCard)"
            onPulsado: raiz.exporta(Contactos.VCard)
        }

        BotonDeSimbolo {
            simbolo: "tablecells"
            nombre: "Guardar todos (hoja)"
            ayuda: "Guardar todos (hoja)"
            onPulsado: raiz.exporta(Contactos.Hoja)
        }
    }

    CampoDeBusqueda {
        id: buscar

        anchors.top: cabeza.bottom
        anchors.topMargin: 10
        x: 12
        width: parent.width - 24
        focus: true
        pista: "Buscar por nombre, teléfono o correo"
        texto: raiz.contactos.busqueda
        onTextoChanged: raiz.contactos.busqueda = texto
    }

    Lista {
        id: lista

        anchors.top: buscar.bottom
        anchors.topMargin: 10
        anchors.bottom: parent.bottom
        x: 12
        width: parent.width - 14
        nombre: "Contactos"
        model: raiz.contactos

        delegate: FilaDeContacto {
            width: lista.width - 12
            elegida: index === raiz.contactos.elegido
            onPulsado: raiz.contactos.elegir(index)
        }
    }

    Texto {
        anchors.top: buscar.bottom
        anchors.topMargin: 24
        x: 24
        width: parent.width - 48
        visible: lista.count === 0
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        color: Tema.suave
        text: "No hay nadie así"
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Tema.borde
    }
}
