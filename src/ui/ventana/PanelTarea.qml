pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The strip of the job: title, progress, time left, ending and log.
Rectangle {
    id: raiz

    required property Modelo modelo
    readonly property Tarea tarea: raiz.modelo.tarea
    property bool verRegistro: false
    property int latido: 0

    readonly property bool enMarcha: raiz.tarea.enMarcha
    readonly property bool bien: raiz.tarea.terminadaBien === true
    // The job tells of all its fields by one signal: naming one of them has these asked for anew.
    readonly property double avance: (raiz.tarea.detalle, Rotulos.avance(raiz.tarea))
    readonly property int porcentaje: (raiz.tarea.detalle, raiz.tarea.porcentajeODesconocido())
    // The estimate changes by the mere passing of time, too.
    readonly property string quedan: (raiz.tarea.detalle, raiz.latido, raiz.tarea.quedan())

    implicitHeight: columna.height + 26
    color: Tema.tarjeta
    Accessible.role: Accessible.Pane
    Accessible.name: raiz.tarea.titulo

    Timer {
        interval: 1000
        repeat: true
        running: raiz.enMarcha
        onTriggered: raiz.latido += 1
    }

    Rectangle {
        width: parent.width
        height: 1
        color: Tema.borde
    }

    Column {
        id: columna

        x: 24
        y: 13
        width: parent.width - 48
        spacing: 8

        Item {
            width: parent.width
            height: 32

            Texto {
                anchors.left: parent.left
                anchors.right: acciones.left
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                text: raiz.tarea.titulo
            }

            AccionesDeTarea {
                id: acciones

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                enMarcha: raiz.enMarcha
                bien: raiz.bien
                conCarpeta: raiz.tarea.carpetaResultado !== ""
                onPideCancelar: raiz.tarea.cancelar()
                onPideCerrar: raiz.tarea.cerrarAviso()
                onPideCarpeta: raiz.modelo.abrirEnFinder(raiz.tarea.carpetaResultado)
            }
        }

        BarraDeProgreso {
            width: parent.width
            visible: raiz.avance >= 0 || raiz.enMarcha
            valor: raiz.avance
            relleno: raiz.enMarcha ? Tema.acento : raiz.bien ? Tema.bien : Tema.mal
        }

        DatosDeTarea {
            width: parent.width
            porcentaje: raiz.porcentaje
            detalle: raiz.tarea.detalle
            quedan: raiz.quedan
            hayRegistro: raiz.tarea.registro.length > 0
            verRegistro: raiz.verRegistro
            onCambiaRegistro: raiz.verRegistro = !raiz.verRegistro
        }

        Cargador {
            width: parent.width
            activo: raiz.verRegistro && raiz.tarea.registro.length > 0
            visible: activo

            RegistroDeTarea {
                lineas: raiz.tarea.registro
                altoMaximo: Math.max(80, Math.min(220, raiz.Window.height - 400))
            }
        }
    }
}
