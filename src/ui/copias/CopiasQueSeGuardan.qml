pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The earlier backups: how many stay, and what there is of each.
Column {
    id: raiz

    required property CopiasGuardadas guardadas

    spacing: 8
    Component.onCompleted: raiz.guardadas.mirar()

    Row {
        width: parent.width
        spacing: 8

        Texto {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - menos.width - mas.width - 16
            wrapMode: Text.Wrap
            font.weight: Font.Medium
            text: raiz.guardadas.cuantas === 0 ? "No guardar copias anteriores" : raiz.guardadas.cuantas === 1 ? "Guardar también la copia anterior" : "Guardar también las " + raiz.guardadas.cuantas + " copias anteriores"
        }

        Boton {
            id: menos

            nombre: "Guardar una menos"
            texto: "−"
            activo: raiz.guardadas.cuantas > 0
            onPulsado: raiz.guardadas.cuantas = raiz.guardadas.cuantas - 1
        }

        Boton {
            id: mas

            nombre: "Guardar una más"
            texto: "+"
            activo: raiz.guardadas.cuantas < 9
            onPulsado: raiz.guardadas.cuantas = raiz.guardadas.cuantas + 1
        }
    }

    Texto {
        width: parent.width
        tipo: Texto.Menor
        wrapMode: Text.Wrap
        text: "Al acabar bien una copia nueva, la que había se queda con su fecha. Se devuelven al iPhone como la de ahora. " + raiz.guardadas.ocupan
    }

    Repeater {
        model: raiz.guardadas.filas

        Row {
            id: fila

            required property var modelData
            required property int index

            width: raiz.width
            spacing: 8

            Column {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - ver.width - quitar.width - 16
                spacing: 2

                Texto {
                    width: parent.width
                    wrapMode: Text.Wrap
                    text: fila.modelData.titulo
                }

                Texto {
                    width: parent.width
                    tipo: Texto.Menor
                    wrapMode: Text.Wrap
                    text: fila.modelData.detalle
                }
            }

            Boton {
                id: ver

                clase: Boton.Callado
                nombre: "Ver la carpeta de la copia del " + fila.modelData.titulo
                texto: "Ver"
                onPulsado: raiz.guardadas.ver(fila.index)
            }

            Boton {
                id: quitar

                clase: Boton.Callado
                nombre: "Quitar la copia del " + fila.modelData.titulo
                texto: "Quitar…"
                onPulsado: raiz.guardadas.pedirQuitar(fila.index)
            }
        }
    }
}
