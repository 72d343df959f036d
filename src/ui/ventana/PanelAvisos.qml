pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// What the program has done, newest first.
Flotante {
    id: raiz

    required property Diario diario
    readonly property bool vacio: raiz.diario.cuantas === 0

    signal pideCarpeta(carpeta: string)

    nombre: "Qué ha pasado"
    altoDelPanel: raiz.vacio ? 236 : Math.min(560, 54 + filas.contentHeight + 10)

    Texto {
        x: 20
        y: 17
        tipo: Texto.Seccion
        text: "Qué ha pasado"
        Accessible.role: Accessible.Heading
    }

    Boton {
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: 13
        visible: !raiz.vacio
        clase: Boton.Callado
        texto: "Vaciar"
        onPulsado: raiz.diario.borrarTodo()
    }

    Cargador {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: 18
        activo: raiz.vacio

        EstadoVacio {
            simbolo: "checkmark.circle"
            titulo: "Todavía no has hecho nada"
            texto: "Aquí verás cada copia y cómo terminó."
        }
    }

    ListView {
        id: filas

        anchors.fill: parent
        anchors.topMargin: 54
        anchors.bottomMargin: 8
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: !raiz.vacio
        currentIndex: -1
        model: raiz.diario
        Accessible.role: Accessible.List
        Accessible.name: "Qué ha pasado"
        Keys.onDownPressed: flick(0, -600)
        Keys.onUpPressed: flick(0, 600)
        delegate: FilaDeActividad {
            width: filas.width
            onPideCarpeta: raiz.pideCarpeta(carpeta)
        }
    }
}
