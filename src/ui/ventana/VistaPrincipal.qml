pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Copias
import Vellora.Sesion
import Vellora.Ventana

/// Decides what the window shows: side list, header, the section in view, the job's strip, and what comes over them.
FocusScope {
    id: raiz

    required property Modelo modelo
    required property Copias copias
    required property list<string> falta
    property int seccion: Secciones.Resumen

    readonly property int contenido: secciones.contenido(raiz.seccion, raiz.falta.length === 0, raiz.modelo.hayIPhone)
    readonly property bool completa: raiz.contenido !== Secciones.FaltanHerramientas

    Secciones {
        id: secciones
    }

    Shortcut {
        sequences: ["F5"]
        enabled: raiz.completa
        onActivated: raiz.modelo.refrescar(false)
    }

    Item {
        id: base

        anchors.fill: parent
        // While something lies over the window the keyboard must not wander behind it.
        enabled: !capas.abierta
        visible: raiz.completa

        ListaDeSecciones {
            id: lista

            width: 236
            height: parent.height
            secciones: secciones
            actual: raiz.seccion
            hayCopia: raiz.copias.ultimaCopia !== "nunca"
            onElegida: cual => raiz.seccion = cual
        }

        Cabecera {
            id: cabecera

            anchors.left: lista.right
            anchors.right: parent.right
            height: 64
            modelo: raiz.modelo
            onPideAvisos: boton => capas.abreAvisos(boton)
            onPideIPhones: boton => capas.abreIPhones(boton)
        }

        Cargador {
            id: contenido

            anchors.left: lista.right
            anchors.right: parent.right
            anchors.top: cabecera.bottom
            anchors.bottom: pie.top
            contenido: {
                if (raiz.contenido === Secciones.SinIPhone)
                    return sinIPhone;
                return raiz.seccion === Secciones.Copias ? copiasYDatos : resumen;
            }
        }

        PieDeTarea {
            id: pie

            anchors.left: lista.right
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            altoMaximo: raiz.height - cabecera.height - 120
            tarea: raiz.modelo.tarea
            onPideCarpeta: carpeta => raiz.modelo.abrirEnFinder(carpeta)
        }
    }

    Component {
        id: sinIPhone

        VistaSinIPhone {
            buscando: raiz.modelo.buscando
            onReintentar: raiz.modelo.refrescar(false)
        }
    }

    Component {
        id: resumen

        PanelResumen {
            modelo: raiz.modelo
            copias: raiz.copias
        }
    }

    Component {
        id: copiasYDatos

        PanelCopias {
            copias: raiz.copias
            hayIPhone: raiz.modelo.hayIPhone
            ocupado: raiz.modelo.tarea.enMarcha
        }
    }

    Cargador {
        anchors.fill: parent
        activo: !raiz.completa

        VistaFaltanHerramientas {
            falta: secciones.enumerar(raiz.falta)
        }
    }

    Capas {
        id: capas

        anchors.fill: parent
        modelo: raiz.modelo
        copias: raiz.copias
        permitida: raiz.completa
    }

    CartelDeAyuda {}
}
