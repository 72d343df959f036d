pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// One row of a table.
Item {
    id: raiz

    required property var celdas
    required property real anchoDeCelda

    implicitHeight: fila.height + 16
    Accessible.role: Accessible.Row
    Accessible.name: raiz.celdas.join(", ")

    Row {
        id: fila

        y: 8

        Repeater {
            model: raiz.celdas

            Texto {
                required property string modelData

                width: raiz.anchoDeCelda
                rightPadding: 14
                wrapMode: Text.Wrap
                maximumLineCount: 4
                elide: Text.ElideRight
                text: modelData
                Accessible.ignored: true
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Tema.borde
    }
}
