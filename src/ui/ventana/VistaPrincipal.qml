pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// Lays out the window, and what comes over it. What is not seen at the start is read from its file when it is needed.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo
    required property list<string> falta

    /// What had the keyboard before something came over the window; it gets it back.
    readonly property Item enfocado: Window.activeFocusItem
    property Item ultimo: null

    signal sale

    function devuelveElTeclado() {
        if (estado.hayCapa || raiz.enfocado !== null && raiz.enfocado.visible && raiz.enfocado !== raiz)
            return;
        const sirve = raiz.ultimo !== null && raiz.ultimo.visible && raiz.ultimo.enabled;
        (sirve ? raiz.ultimo : carrete.activo ? carrete : raiz).forceActiveFocus(Qt.PopupFocusReason);
    }

    onEnfocadoChanged: if (!estado.hayCapa && enfocado !== null && enfocado !== raiz) ultimo = enfocado

    /// A job runs, and the window is to close.
    function preguntaAlSalir() {
        estado.abre(EstadoDeVentana.Salir, null);
    }

    Secciones {
        id: secciones
    }

    EstadoDeVentana {
        id: estado

        programa: raiz.programa
        secciones: secciones
        hayHerramientas: raiz.falta.length === 0
        onSale: raiz.sale()
        onHayCapaChanged: trasLaCapa.restart()
    }

    // Once what lay over the window has gone, or has found its place.
    Timer {
        id: trasLaCapa

        interval: 0
        onTriggered: raiz.devuelveElTeclado()
    }

    Keys.onPressed: tecla => {
        if (estado.hayCapa || !estado.hayHerramientas || estado.bloqueada)
            return;
        const cual = tecla.modifiers === Qt.ControlModifier ? secciones.porAtajo(tecla.key) : -1;
        tecla.accepted = cual >= 0 || tecla.key === Qt.Key_F5 || tecla.key === Qt.Key_F10;
        if (cual >= 0)
            estado.abreSeccion(cual);
        else if (tecla.key === Qt.Key_F5)
            raiz.modelo.refrescar(false);
        else if (tecla.key === Qt.Key_F10)
            cabecera.abreAcciones();
    }

    Item {
        anchors.fill: parent
        // While something lies over the window the keyboard must not wander behind it.
        enabled: !estado.hayCapa
        visible: estado.hayHerramientas && !estado.bloqueada

        ListaDeSecciones {
            id: lista

            width: 236
            height: parent.height
            secciones: secciones
            actual: estado.seccion
            hayCopia: raiz.programa.copias.ultimaCopia !== "nunca"
            onElegida: cual => estado.abreSeccion(cual)
        }

        Cabecera {
            id: cabecera

            anchors.left: lista.right
            anchors.right: parent.right
            height: 64
            modelo: raiz.modelo
            onPideAvisos: boton => estado.abre(EstadoDeVentana.Avisos, boton)
            onPideIPhones: boton => estado.abre(EstadoDeVentana.IPhones, boton)
            onPideAcciones: boton => estado.abre(EstadoDeVentana.Acciones, boton)
        }

        Item {
            anchors.left: lista.right
            anchors.right: parent.right
            anchors.top: cabecera.bottom
            anchors.bottom: pie.top

            Cargador {
                anchors.fill: parent
                activo: estado.contenido === Secciones.SinIPhone

                VistaSinIPhone {
                    buscando: raiz.modelo.buscando
                    callados: raiz.modelo.avisoCallados
                    onReintentar: raiz.modelo.refrescar(false)
                }
            }

            Cargador {
                anchors.fill: parent
                activo: estado.contenido === Secciones.LaSeccion
                visible: !estado.hayVisor
                enabled: !estado.hayVisor
                fuente: secciones.vista(estado.seccion)
                propiedades: ({
                        programa: raiz.programa
                    })
            }

            Cargador {
                anchors.fill: parent
                focus: activo
                activo: estado.hayVisor && !estado.hayCarrete
                fuente: "qrc:/qt/qml/Vellora/Datos/VistaDeDatos.qml"
                propiedades: ({
                        programa: raiz.programa
                    })
            }

            Cargador {
                id: carrete

                anchors.fill: parent
                focus: activo
                activo: estado.hayCarrete
                fuente: "qrc:/qt/qml/Vellora/Fotos/VistaSeleccionFotos.qml"
                propiedades: ({
                        programa: raiz.programa
                    })
            }
        }

        Cargador {
            id: pie

            readonly property Tarea tarea: raiz.modelo.tarea

            anchors.left: lista.right
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            activo: !pie.tarea.oculta && (pie.tarea.enMarcha || pie.tarea.terminada)
            fuente: "qrc:/qt/qml/Vellora/Ventana/PanelTarea.qml"
            propiedades: ({
                    modelo: raiz.modelo
                })
        }
    }

    Cargador {
        anchors.fill: parent
        activo: !estado.hayHerramientas
        fuente: "qrc:/qt/qml/Vellora/Ventana/VistaFaltanHerramientas.qml"
        propiedades: ({
                falta: secciones.enumerar(raiz.falta)
            })
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: estado.hayCapa
        fuente: "qrc:/qt/qml/Vellora/Ventana/Capas.qml"
        propiedades: ({
                programa: raiz.programa,
                estado: estado
            })
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: estado.bloqueada
        fuente: "qrc:/qt/qml/Vellora/Ventana/VistaBloqueo.qml"
        propiedades: ({
                cerradura: raiz.programa.cerradura
            })
    }

    Cargador {
        anchors.fill: parent
        activo: Ayudas.visible
        fuente: "qrc:/qt/qml/Vellora/Componentes/CartelDeAyuda.qml"
    }
}
