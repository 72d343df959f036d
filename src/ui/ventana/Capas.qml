pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion
import Vellora.Ventana

/// What comes over the window, one at a time: the floating panels and the sheets.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo
    readonly property Copias copias: raiz.programa.copias
    readonly property Consentimiento consentimiento: raiz.programa.consentimiento
    required property EstadoDeVentana estado

    readonly property real ancho: raiz.estado.panel === EstadoDeVentana.Avisos ? 420 : 340
    property point lugar

    function lugarBajo(boton: Item, ancho: real): point {
        const sitio = boton.mapToItem(raiz, 0, 0);
        const x = sitio.x + boton.width / 2 > raiz.width / 2 ? sitio.x + boton.width - ancho : sitio.x;
        return Qt.point(x, sitio.y + boton.height + 8);
    }

    /// Anew when the window changes its size, once everything has found its place.
    function coloca() {
        if (raiz.estado.origen)
            raiz.lugar = raiz.lugarBajo(raiz.estado.origen, raiz.ancho);
    }

    focus: true
    onWidthChanged: trasElCambio.restart()
    onAnchoChanged: raiz.coloca()
    Component.onCompleted: raiz.coloca()

    Timer {
        id: trasElCambio

        interval: 0
        onTriggered: raiz.coloca()
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.estado.panel === EstadoDeVentana.Avisos && !raiz.estado.deBienvenida

        PanelAvisos {
            diario: raiz.modelo.diario
            lugar: raiz.lugar
            anchoDelPanel: raiz.ancho
            onPideCarpeta: carpeta => raiz.modelo.abrirEnFinder(carpeta)
            onCerrado: raiz.estado.cierra()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.estado.panel === EstadoDeVentana.IPhones && !raiz.estado.deBienvenida

        SelectorDeIPhone {
            dispositivos: raiz.modelo.dispositivos
            actual: raiz.modelo.seleccionado.id
            lugar: raiz.lugar
            anchoDelPanel: raiz.ancho
            onCerrado: raiz.estado.cierra()
            onElegido: udid => {
                raiz.modelo.seleccionar(udid);
                raiz.estado.cierra();
            }
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.estado.panel === EstadoDeVentana.Acciones && !raiz.estado.deBienvenida

        MenuAcciones {
            programa: raiz.programa
            lugar: raiz.lugar
            anchoDelPanel: raiz.ancho
            onCerrado: raiz.estado.cierra()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.estado.panel === EstadoDeVentana.Salir

        HojaDeConfirmar {
            titulo: "Hay un trabajo en marcha"
            texto: "Si cierras Vellora ahora, se para a medias: " + raiz.modelo.tarea.titulo + "."
            textoDeAceptar: "Cerrar y pararlo"
            textoDeDejar: "Seguir"
            onCerrada: raiz.estado.cierra()
            onAceptada: {
                raiz.estado.cierra();
                raiz.estado.sale();
            }
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.programa.bateria.verBateria && !raiz.estado.deBienvenida
        fuente: "qrc:/qt/qml/Vellora/Ventana/VistaBateria.qml"
        propiedades: ({
                programa: raiz.programa
            })
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.programa.telegram.pidiendoDatos && !raiz.estado.deBienvenida
        fuente: "qrc:/qt/qml/Vellora/Copias/FormularioTelegram.qml"
        propiedades: ({
                telegram: raiz.programa.telegram
            })
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: (raiz.programa.contactos.hoja === Contactos.Nuevo || raiz.programa.contactos.hoja === Contactos.Editar) && !raiz.estado.deBienvenida

        VistaNuevoContacto {
            contactos: raiz.programa.contactos
            onCerrada: raiz.programa.contactos.abrirHoja(Contactos.SinHoja)
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.programa.contactos.hoja === Contactos.Borrar && !raiz.estado.deBienvenida

        HojaDeConfirmar {
            titulo: "¿Borrar a " + raiz.programa.contactos.ficha.comoSeLlama + "?"
            texto: "Se borra de la agenda de este Mac. En el iPhone solo desaparece si tienes los Contactos de iCloud encendidos en los dos sitios; la copia de seguridad no se toca."
            textoDeAceptar: "Borrar de la agenda del Mac"
            textoDeDejar: "No hacer nada"
            onCerrada: raiz.programa.contactos.abrirHoja(Contactos.SinHoja)
            onAceptada: raiz.programa.contactos.borrarContacto()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.programa.devolucion.eligiendo && !raiz.estado.deBienvenida
        fuente: "qrc:/qt/qml/Vellora/Copias/VistaDevolver.qml"
        propiedades: ({
                devolucion: raiz.programa.devolucion
            })
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.consentimiento.abierto && !raiz.estado.deBienvenida

        HojaDeConfirmar {
            titulo: raiz.consentimiento.titulo
            aQuien: raiz.consentimiento.aQuien
            texto: raiz.consentimiento.texto
            textoDeAceptar: raiz.consentimiento.aceptar
            textoDeDejar: raiz.consentimiento.dejar
            onCerrada: raiz.consentimiento.responder(false)
            onAceptada: raiz.consentimiento.responder(true)
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.consentimiento.aviso !== "" && !raiz.estado.deBienvenida

        HojaDeAviso {
            texto: raiz.consentimiento.aviso
            onCerrada: raiz.consentimiento.cerrarAviso()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.estado.deBienvenida

        VistaBienvenida {
            dispositivo: raiz.modelo.iPhoneNuevo
            onAplazada: raiz.estado.aplazado = raiz.modelo.iPhoneNuevo.id
            onElegida: conCopia => {
                // The selected phone may be another one by now; the backup is of the one that was greeted.
                const cual = raiz.modelo.iPhoneNuevo.id;
                raiz.modelo.seleccionar(cual);
                raiz.modelo.marcarConocido(cual);
                if (conCopia && raiz.modelo.seleccionado.id === cual)
                    raiz.copias.pedirCopia();
            }
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.copias.pidiendoClave && !raiz.estado.deBienvenida
        fuente: "qrc:/qt/qml/Vellora/Copias/VistaClaveCifrado.qml"
        propiedades: ({
                copias: raiz.copias
            })
    }
}
