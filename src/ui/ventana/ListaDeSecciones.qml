pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Ventana

/// The side list. Up and down move among the sections that can be opened.
Rectangle {
    id: raiz

    required property Secciones secciones
    required property int actual
    required property bool hayCopia

    signal elegida(cual: int)

    color: Tema.lateral
    Accessible.role: Accessible.List
    Accessible.name: "Secciones"

    Row {
        id: marca

        x: 18
        y: 18
        spacing: 10

        Rectangle {
            width: 26
            height: 26
            radius: 7
            gradient: Gradient {
                orientation: Gradient.Horizontal

                GradientStop {
                    position: 0
                    color: "#2F6BE8"
                }
                GradientStop {
                    position: 1
                    color: "#7A5AE0"
                }
            }
        }

        Texto {
            anchors.verticalCenter: parent.verticalCenter
            tipo: Texto.Seccion
            text: "Vellora"
        }
    }

    Desplazable {
        anchors.fill: parent
        anchors.topMargin: 54
        contentHeight: columna.height + 12

        Column {
            id: columna

            x: 10
            width: parent.width - 20

            Repeater {
                model: raiz.secciones

                FilaDeSeccion {
                    width: columna.width
                    elegida: seccion === raiz.actual
                    hayCopia: raiz.hayCopia
                    onPulsada: raiz.elegida(seccion)
                }
            }
        }
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Tema.borde
    }
}
