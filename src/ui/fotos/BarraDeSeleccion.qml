import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// What is on show of the roll, in what order and how large.
Column {
    id: raiz

    required property SeleccionFotos seleccion
    property real lado: 140

    signal otroLado(lado: real)

    spacing: 10

    Item {
        width: parent.width
        height: 36

        CampoDeBusqueda {
            id: campo

            width: Math.min(300, parent.width * 0.34)
            pista: "Buscar"
            onTextoChanged: raiz.seleccion.busqueda = campo.texto
        }

        Opciones {
            anchors.left: campo.right
            anchors.leftMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            nombre: "Orden"
            valor: raiz.seleccion.orden
            opciones: [
                {
                    valor: "nombre",
                    texto: "Por nombre"
                },
                {
                    valor: "peso",
                    texto: "Por tamaño"
                },
                {
                    valor: "tipo",
                    texto: "Por tipo"
                }
            ]
            onElegida: valor => raiz.seleccion.orden = valor
        }

        Deslizador {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: 110
            nombre: "Tamaño de las fotos"
            ayuda: "Hacer las fotos más grandes o más pequeñas"
            desde: 90
            hasta: 260
            valor: raiz.lado
            onMovido: valor => raiz.otroLado(valor)
        }
    }

    Opciones {
        width: parent.width
        nombre: "Qué fotos"
        valor: raiz.seleccion.filtro
        opciones: [
            {
                valor: "",
                texto: "Todas"
            },
            {
                valor: "fotos",
                texto: "Fotos"
            },
            {
                valor: "videos",
                texto: "Vídeos"
            },
            {
                valor: "vivas",
                texto: "En vivo"
            },
            {
                valor: "retocadas",
                texto: "Retocadas"
            },
            {
                valor: "copiadas",
                texto: "Ya copiadas"
            },
            {
                valor: "sincopiar",
                texto: "Sin copiar"
            },
            {
                valor: "papelera",
                texto: "Papelera"
            }
        ]
        onElegida: valor => raiz.seleccion.filtro = valor
    }
}
