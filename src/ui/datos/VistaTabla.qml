pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// A table: its heading sorts it, a box searches it.
FocusScope {
    id: raiz

    required property TablaDeFichero tabla
    readonly property int columnas: Math.max(1, raiz.tabla.columnas.length)
    readonly property real anchoDeCelda: Math.max(120, (raiz.width - 56) / raiz.columnas)

    signal alCerrar

    BarraDeVista {
        id: barra

        width: parent.width
        titulo: raiz.tabla.nombre
        pie: raiz.tabla.cargando ? "" : raiz.tabla.busqueda === "" ? raiz.tabla.total + " filas" : raiz.tabla.visibles + " de " + raiz.tabla.total + " filas"
        onVuelta: raiz.alCerrar()

        CampoDeBusqueda {
            width: 240
            pista: "Buscar en la tabla"
            texto: raiz.tabla.busqueda
            onTextoChanged: raiz.tabla.busqueda = texto
        }
    }

    Flickable {
        id: ancho

        anchors.top: barra.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        contentWidth: Math.max(width, raiz.anchoDeCelda * raiz.columnas + 56)
        flickableDirection: Flickable.HorizontalFlick
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Row {
            id: cabecera

            x: 28
            height: 40

            Repeater {
                model: raiz.tabla.columnas

                CabeceraDeColumna {
                    width: raiz.anchoDeCelda
                    height: 40
                    ordenada: raiz.tabla.orden === index
                    alReves: raiz.tabla.alReves
                    onPulsado: raiz.tabla.ordenarPor(index)
                }
            }
        }

        Lista {
            id: lista

            anchors.top: cabecera.bottom
            width: ancho.contentWidth
            height: ancho.height - cabecera.height
            bottomMargin: 16
            focus: true
            nombre: raiz.tabla.nombre
            model: raiz.tabla

            delegate: FilaDeTabla {
                x: 28
                width: lista.width - 56
                anchoDeCelda: raiz.anchoDeCelda
            }
        }
    }

    Texto {
        anchors.centerIn: parent
        visible: lista.count === 0
        color: Tema.suave
        text: raiz.tabla.cargando ? "Abriendo…" : raiz.tabla.busqueda !== "" ? "Ninguna fila lleva eso" : "La tabla está vacía"
    }
}
