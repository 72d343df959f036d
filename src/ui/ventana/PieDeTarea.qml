pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// Where the job's strip stands: no room is taken, and nothing made, while there is nothing to tell.
Item {
    id: raiz

    required property Tarea tarea
    property real altoMaximo: 400
    readonly property bool visibleAhora: !raiz.tarea.oculta && (raiz.tarea.enMarcha || raiz.tarea.terminada)

    signal pideCarpeta(carpeta: string)

    height: tira.implicitHeight

    Cargador {
        id: tira

        width: parent.width
        activo: raiz.visibleAhora

        PanelTarea {
            altoMaximo: raiz.altoMaximo
            tarea: raiz.tarea
            onPideCarpeta: carpeta => raiz.pideCarpeta(carpeta)
        }
    }
}
