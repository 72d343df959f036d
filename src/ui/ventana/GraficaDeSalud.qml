pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// The measurements that were written down, the last twenty-four, as bars between half and full health.
Item {
    id: raiz

    /// Pairs of `fecha` and `salud`, the oldest first.
    required property var historial
    readonly property var ultimas: raiz.historial.slice(-24)
    readonly property real paso: raiz.ultimas.length > 0 ? Math.min(64, barras.width / raiz.ultimas.length) : 0

    function alto(salud: int): real {
        return barras.height * Math.max(0.04, Math.min(1, (salud - 50) / 50));
    }

    implicitHeight: 132
    Accessible.role: Accessible.Chart
    Accessible.name: "Salud de la batería, " + raiz.ultimas.length + " mediciones"

    Item {
        id: barras

        width: parent.width
        height: parent.height - 24

        Repeater {
            model: raiz.ultimas

            Item {
                id: barra

                required property var modelData
                required property int index

                x: barra.index * raiz.paso
                width: raiz.paso
                height: barras.height

                Rectangle {
                    anchors.bottom: parent.bottom
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: Math.max(4, Math.min(24, raiz.paso - 6))
                    height: raiz.alto(barra.modelData.salud)
                    radius: 4
                    color: barra.modelData.salud > 79 ? Tema.acento : Tema.mal
                }

                Texto {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: barras.height - raiz.alto(barra.modelData.salud) - height - 2
                    visible: raiz.paso >= 34
                    tipo: Texto.Menor
                    text: barra.modelData.salud + " %"
                    Accessible.name: barra.modelData.fecha + ": " + text
                }
            }
        }
    }

    Rectangle {
        anchors.top: barras.bottom
        width: parent.width
        height: 1
        color: Tema.borde
    }

    Texto {
        anchors.bottom: parent.bottom
        tipo: Texto.Menor
        text: raiz.ultimas.length > 0 ? raiz.ultimas[0].fecha : ""
    }

    Texto {
        anchors.bottom: parent.bottom
        x: Math.max(implicitWidth + 12, raiz.ultimas.length * raiz.paso - implicitWidth)
        visible: raiz.ultimas.length > 1
        tipo: Texto.Menor
        text: raiz.ultimas.length > 1 ? raiz.ultimas[raiz.ultimas.length - 1].fecha : ""
    }
}
