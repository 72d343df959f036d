import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The card of a phone: its name and its facts, and how full it is.
Tarjeta {
    id: raiz

    required property dispositivo iphone
    required property string ultimaCopia
    readonly property double ocupado: Rotulos.ocupado(raiz.iphone)

    implicitHeight: columna.height + 40

    Rectangle {
        id: cuadro

        x: 20
        y: 20
        width: 52
        height: 52
        radius: 12
        color: Tema.acentoSuave

        Icono {
            anchors.centerIn: parent
            lado: 28
            simbolo: "iphone.gen3"
            color: Tema.acento
        }
    }

    Column {
        id: columna

        x: 92
        y: 20
        width: parent.width - x - 20
        spacing: 18

        Texto {
            width: parent.width
            topPadding: 2
            tipo: Texto.Titulo
            font.pixelSize: 18
            elide: Text.ElideRight
            text: raiz.iphone.nombre
        }

        Grid {
            id: datos

            readonly property real anchoDeDato: Math.floor((width - (columns - 1) * columnSpacing) / columns)

            width: parent.width
            columns: width >= 680 ? 5 : 3
            columnSpacing: 20
            rowSpacing: 16

            DatoDeIPhone {
                width: datos.anchoDeDato
                nombre: "Modelo"
                valor: raiz.iphone.modelo
            }

            DatoDeIPhone {
                width: datos.anchoDeDato
                nombre: "Sistema"
                valor: Rotulos.sistema(raiz.iphone)
            }

            DatoDeIPhone {
                width: datos.anchoDeDato
                nombre: "Batería"
                valor: Rotulos.bateria(raiz.iphone)
            }

            DatoDeIPhone {
                width: datos.anchoDeDato
                nombre: "Identificador"
                valor: Rotulos.identificador(raiz.iphone)
            }

            DatoDeIPhone {
                width: datos.anchoDeDato
                nombre: "Última copia"
                valor: raiz.ultimaCopia
            }
        }

        EspacioDeIPhone {
            width: parent.width
            visible: raiz.ocupado >= 0
            iphone: raiz.iphone
        }
    }
}
