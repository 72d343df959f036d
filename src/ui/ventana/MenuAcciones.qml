pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The menu "Acciones": everything that can be done from anywhere, in its order. What is still to come stands disabled.
Flotante {
    id: raiz

    required property Programa programa
    readonly property bool libre: !raiz.programa.modelo.tarea.enMarcha

    readonly property var acciones: [
        {
            titulo: "Copiar fotos y vídeos",
            puede: raiz.libre && raiz.programa.modelo.hayIPhone,
            haz: () => raiz.programa.fotos.copiar()
        },
        {
            titulo: "Hacer copia de seguridad",
            puede: raiz.libre && raiz.programa.modelo.hayIPhone,
            haz: () => raiz.programa.copias.pedirCopia()
        },
        {
            titulo: "Sacar mis datos de la copia",
            puede: raiz.libre && raiz.programa.copias.ultimaCopia !== "nunca",
            haz: () => raiz.programa.sacarMisDatos()
        },
        {
            titulo: "Ordenar mis fotos por año y mes"
        },
        {
            titulo: "Convertir fotos a JPG"
        },
        {
            titulo: "Quitar la localización de las fotos"
        },
        {
            titulo: "Mapa de mis fotos"
        },
        {
            titulo: "Revisar la seguridad del iPhone"
        },
        {
            titulo: "Buscar programas espía"
        },
        {
            titulo: "Traer los iconos de las apps"
        },
        {
            titulo: "Cómo está todo"
        },
        {
            titulo: "Cuántas fotos hago"
        },
        {
            titulo: "Qué ocupa mi iPhone"
        },
        {
            titulo: "Abrir mi carpeta",
            puede: true,
            haz: () => raiz.programa.abrirMiCarpeta()
        },
        {
            titulo: "Buscar el iPhone otra vez",
            puede: true,
            haz: () => raiz.programa.modelo.refrescar(false)
        }
    ]

    nombre: "Acciones"
    altoDelPanel: columna.height + 12

    Desplazable {
        anchors.fill: parent
        contentHeight: columna.height + 12

        Column {
            id: columna

            x: 6
            y: 6
            width: parent.width - 12

            Repeater {
                model: raiz.acciones

                OpcionDeMenu {
                    required property var modelData
                    required property int index

                    width: columna.width
                    titulo: modelData.titulo
                    activo: modelData.puede === true
                    porVenir: modelData.haz === undefined
                    onPulsado: {
                        const haz = modelData.haz;
                        raiz.cerrado();
                        haz();
                    }
                }
            }
        }
    }
}
