pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The battery in full: its health, what it has been through, and how that goes.
Hoja {
    id: raiz

    required property Programa programa
    readonly property BateriaYRed datos: raiz.programa.bateria
    readonly property datosBateria pila: raiz.datos.bateria

    nombre: "La batería de tu iPhone"
    ancho: 620
    onCerrada: raiz.datos.cierra()

    Column {
        width: parent.width
        spacing: 14

        Texto {
            width: parent.width - 32
            tipo: Texto.Titulo
            font.pixelSize: 20
            wrapMode: Text.Wrap
            text: "La batería de tu iPhone"
            Accessible.role: Accessible.Heading
        }

        Row {
            width: parent.width
            spacing: 20

            DibujoDeBateria {
                salud: raiz.pila.salud
            }

            Column {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - 152
                spacing: 2

                Texto {
                    width: parent.width
                    tipo: Texto.Titulo
                    text: raiz.pila.salud > 0 ? raiz.pila.salud + " %" : "—"
                }

                Texto {
                    width: parent.width
                    color: Tema.suave
                    wrapMode: Text.Wrap
                    text: "de cuando era nueva"
                }

                Texto {
                    width: parent.width
                    font.weight: Font.DemiBold
                    wrapMode: Text.Wrap
                    text: raiz.pila.veredicto + " · " + Rotulos.estadoDeLaBateria(raiz.pila)
                }
            }
        }

        Tira {
            width: parent.width
            texto: raiz.pila.tocaCambiarla ? "Por debajo del 80% Apple considera que la batería está agotada y la cambia. La tuya está al " + raiz.pila.salud + "%." : ""
        }

        DetalleDeBateria {
            width: parent.width
            pila: raiz.pila
        }

        Texto {
            width: parent.width
            tipo: Texto.Seccion
            text: "Cómo va bajando"
            visible: raiz.datos.historial.length > 0
            Accessible.role: Accessible.Heading
        }

        GraficaDeSalud {
            width: parent.width
            visible: raiz.datos.historial.length > 0
            historial: raiz.datos.historial
        }

        Texto {
            width: parent.width
            visible: raiz.datos.historial.length === 0
            color: Tema.suave
            wrapMode: Text.Wrap
            text: "Vuelve a mirar la batería de vez en cuando y aquí verás cómo va bajando con los meses."
        }

        Tira {
            width: parent.width
            clase: Tira.Informa
            texto: raiz.datos.medida
        }

        Boton {
            anchors.right: parent.right
            focus: true
            activo: !raiz.programa.modelo.tarea.enMarcha
            texto: "Apuntar la medida de hoy"
            Component.onCompleted: forceActiveFocus()
            onPulsado: raiz.datos.apuntar()
        }
    }
}
