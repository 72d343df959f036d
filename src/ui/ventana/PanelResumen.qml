import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The selected phone at a glance, and what is done most.
Pagina {
    id: raiz

    required property Modelo modelo
    required property Copias copias
    readonly property dispositivo iphone: raiz.modelo.seleccionado

    titulo: "Resumen"

    Tira {
        width: parent.width
        clase: Tira.Mal
        texto: raiz.modelo.avisoAcceso
    }

    Tira {
        width: parent.width
        texto: raiz.copias.aviso
    }

    FichaDeIPhone {
        width: parent.width
        iphone: raiz.iphone
        ultimaCopia: raiz.copias.ultimaCopia
    }

    Texto {
        topPadding: 4
        tipo: Texto.Seccion
        text: "Copia de seguridad"
        Accessible.role: Accessible.Heading
    }

    Grid {
        id: rejilla

        readonly property real anchoDeCelda: Math.floor((width - (columns - 1) * spacing) / columns)
        readonly property real altoDeCelda: Math.max(hacer.implicitHeight, ver.implicitHeight)

        width: parent.width
        columns: Math.min(raiz.columnas, 3)
        spacing: 12

        BotonGrande {
            id: hacer

            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: !raiz.modelo.tarea.enMarcha
            simbolo: "externaldrive.badge.timemachine"
            titulo: "Hacer la copia ahora"
            pie: raiz.copias.pieDeHacerCopia
            onPulsado: raiz.copias.pedirCopia()
        }

        BotonGrande {
            id: ver

            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            simbolo: "folder"
            titulo: "Ver la copia por dentro"
            pie: "Abrir la carpeta"
            onPulsado: raiz.copias.abrirCarpeta()
        }
    }
}
