pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The sheet in which a backup is chosen to be put back.
Hoja {
    id: raiz

    required property Devolucion devolucion

    nombre: "¿Qué copia quieres devolver?"
    ancho: 560
    onCerrada: raiz.devolucion.cerrar()

    Column {
        width: parent.width
        spacing: 14

        Texto {
            width: parent.width - 32
            tipo: Texto.Titulo
            font.pixelSize: 20
            wrapMode: Text.Wrap
            text: raiz.nombre
            Accessible.role: Accessible.Heading
        }

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.Wrap
            text: raiz.devolucion.mirando ? "Mirando qué copias hay en el ordenador…" : "Se devolverá a «" + raiz.devolucion.paraQuien + "». Antes de hacer nada te lo vuelvo a preguntar."
        }

        Repeater {
            model: raiz.devolucion.copias

            FilaDeCopia {
                required property var modelData
                required property int index

                width: parent.width
                activo: modelData.vale
                titulo: modelData.titulo
                texto: modelData.detalle
                onPulsado: raiz.devolucion.elegir(index)
            }
        }

        Boton {
            anchors.right: parent.right
            focus: true
            texto: "No hacer nada"
            Component.onCompleted: forceActiveFocus()
            onPulsado: raiz.devolucion.cerrar()
        }
    }
}
