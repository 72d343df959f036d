pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The phone's networks, when something of them is worth a look.
Tarjeta {
    id: raiz

    required property BateriaYRed datos

    visible: raiz.datos.hayAvisoDeRed
    implicitHeight: raiz.visible ? columna.height + 32 : 0

    Icono {
        x: 20
        y: 18
        lado: 20
        simbolo: "antenna.radiowaves.left.and.right"
        color: Tema.aviso
    }

    Column {
        id: columna

        x: 54
        y: 16
        width: parent.width - x - 20
        spacing: 4

        Texto {
            width: parent.width
            tipo: Texto.Seccion
            wrapMode: Text.Wrap
            text: "Revisa la conexión de este iPhone"
            Accessible.role: Accessible.Heading
        }

        Repeater {
            model: raiz.datos.avisosDeRed

            Texto {
                required property string modelData

                width: columna.width
                color: Tema.suave
                wrapMode: Text.Wrap
                text: modelData
            }
        }
    }
}
