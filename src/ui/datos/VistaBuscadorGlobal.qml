pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// One box that looks through everything that has been saved.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property Buscador buscador: raiz.programa.buscador

    Column {
        id: cabeza

        x: 28
        y: 24
        width: Math.min(parent.width - 56, 900)
        spacing: 12

        Texto {
            tipo: Texto.Titulo
            text: "Buscar en todo"
            Accessible.role: Accessible.Heading
        }

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.Wrap
            text: "Una palabra y busca a la vez en tus mensajes, WhatsApp, notas, contactos, citas y fotos."
        }

        CampoDeBusqueda {
            id: campo

            width: parent.width
            alto: 44
            focus: true
            pista: "Escribe lo que buscas y pulsa Enter"
            onAceptado: raiz.buscador.buscar(campo.texto)
            Component.onCompleted: {
                campo.texto = raiz.buscador.buscado;
                forceActiveFocus();
            }
        }

        Item {
            width: parent.width
            height: 6

            // A short search is over before a bar would be noticed.
            BarraDeProgreso {
                width: parent.width
                visible: despacio.pasado && raiz.buscador.buscando
                valor: raiz.buscador.avance
                Accessible.name: "Buscando"
            }

            Timer {
                id: despacio

                property bool pasado: false

                interval: 1000
                running: raiz.buscador.buscando
                onRunningChanged: if (running) despacio.pasado = false
                onTriggered: despacio.pasado = true
            }
        }
    }

    Lista {
        id: lista

        anchors.top: cabeza.bottom
        anchors.topMargin: 10
        anchors.bottom: parent.bottom
        width: parent.width
        bottomMargin: 20
        spacing: 6
        nombre: "Resultados"
        model: raiz.buscador

        delegate: FilaDeResultado {
            x: 28
            width: Math.min(lista.width - 56, 900)
            onPulsado: raiz.buscador.abrir(index)
        }
    }

    EstadoVacio {
        anchors.centerIn: lista
        width: parent.width - 64
        visible: raiz.buscador.cuantos === 0 && !raiz.buscador.buscando
        simbolo: "text.magnifyingglass"
        titulo: raiz.buscador.buscado === "" ? "Escribe arriba lo que buscas" : "No he encontrado «" + raiz.buscador.buscado + "»"
        texto: raiz.buscador.buscado === "" ? "" : "Recuerda: los mensajes y contactos salen de la copia. Sácalos en «Copias y datos» si no lo has hecho."
    }
}
