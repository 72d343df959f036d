pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// A number or an address, and the ways to call or write to it.
Tarjeta {
    id: raiz

    required property string modelData
    required property string simbolo
    required property var modos

    signal pide(como: string, quien: string)

    implicitHeight: fila.height + 24

    Flow {
        id: fila

        x: 16
        y: 12
        width: parent.width - 32
        spacing: 10

        Row {
            height: 32
            spacing: 10

            Icono {
                anchors.verticalCenter: parent.verticalCenter
                lado: 15
                simbolo: raiz.simbolo
                color: Tema.suave
            }

            Texto {
                anchors.verticalCenter: parent.verticalCenter
                width: Math.min(implicitWidth, raiz.width - 60)
                rightPadding: 6
                elide: Text.ElideRight
                maximumLineCount: 1
                text: raiz.modelData
            }
        }

        Repeater {
            model: raiz.modos

            Boton {
                required property var modelData

                clase: Boton.Callado
                texto: modelData[1]
                nombre: modelData[1] + " a " + raiz.modelData
                onPulsado: raiz.pide(modelData[0], raiz.modelData)
            }
        }
    }
}
