import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The selected phone at a glance, and what is done most.
Pagina {
    id: raiz

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo
    readonly property Copias copias: raiz.programa.copias
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

    TarjetaRed {
        width: parent.width
        datos: raiz.programa.bateria
    }

    Texto {
        topPadding: 4
        tipo: Texto.Seccion
        text: "Lo que más se usa"
        Accessible.role: Accessible.Heading
    }

    Grid {
        id: rejilla

        readonly property real anchoDeCelda: Math.floor((width - (columns - 1) * spacing) / columns)
        readonly property real altoDeCelda: Math.max(hacer.implicitHeight, ver.implicitHeight, pila.implicitHeight, bloqueo.implicitHeight)

        width: parent.width
        columns: raiz.columnas
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

        BotonGrande {
            id: pila

            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: !raiz.modelo.tarea.enMarcha
            simbolo: "battery.100"
            titulo: "Mirar la batería"
            pie: raiz.programa.bateria.resumen
            onPulsado: raiz.programa.bateria.mirar()
        }

        BotonGrande {
            id: bloqueo

            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            simbolo: "lock.fill"
            titulo: "Bloquear ahora"
            pie: "Vellora pedirá " + raiz.programa.cerradura.metodo
            onPulsado: raiz.programa.cerradura.cerrarAhora()
        }
    }
}
