pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// What comes over the window: the floating panels and the sheets, one at a time. When one closes, the keyboard goes
/// back to where it was.
FocusScope {
    id: raiz

    required property Modelo modelo
    required property Copias copias
    required property bool permitida

    readonly property bool abierta: raiz.deBienvenida || raiz.panel !== null
    readonly property bool deBienvenida: raiz.permitida && raiz.modelo.hayIPhoneNuevo && raiz.modelo.iPhoneNuevo.id !== raiz.aplazado
    /// The UDID of the new phone whose welcome was closed without an answer.
    property string aplazado
    property Component panel: null
    property Item origen: null
    property Item anterior: null

    function abre(que: Component, boton: Item) {
        raiz.anterior = boton;
        raiz.origen = boton;
        raiz.panel = que;
    }

    function abreAvisos(boton: Item) {
        raiz.abre(avisos, boton);
        raiz.modelo.diario.darPorVisto();
    }

    function abreIPhones(boton: Item) {
        raiz.abre(iphones, boton);
    }

    function cierra() {
        raiz.panel = null;
        if (raiz.anterior)
            raiz.anterior.forceActiveFocus(Qt.PopupFocusReason);
    }

    function lugarBajo(boton: Item, ancho: real): point {
        const sitio = boton.mapToItem(raiz, 0, 0);
        return Qt.point(sitio.x + boton.width / 2 > raiz.width / 2 ? sitio.x + boton.width - ancho : sitio.x, sitio.y + boton.height + 8);
    }

    Connections {
        target: raiz.modelo

        function onCambio() {
            if (!raiz.modelo.hayIPhone)
                raiz.aplazado = "";
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.panel !== null && !raiz.deBienvenida
        contenido: raiz.panel
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.deBienvenida

        VistaBienvenida {
            dispositivo: raiz.modelo.iPhoneNuevo
            onAplazada: raiz.aplazado = raiz.modelo.iPhoneNuevo.id
            onElegida: conCopia => {
                raiz.modelo.marcarConocido(raiz.modelo.iPhoneNuevo.id);
                if (conCopia)
                    raiz.copias.pedirCopia();
            }
        }
    }

    Component {
        id: avisos

        PanelAvisos {
            diario: raiz.modelo.diario
            lugar: raiz.lugarBajo(raiz.origen, anchoDelPanel)
            onPideCarpeta: carpeta => raiz.modelo.abrirEnFinder(carpeta)
            onCerrado: {
                raiz.modelo.diario.darPorVisto();
                raiz.cierra();
            }
        }
    }

    Component {
        id: iphones

        SelectorDeIPhone {
            dispositivos: raiz.modelo.dispositivos
            actual: raiz.modelo.seleccionado.id
            lugar: raiz.lugarBajo(raiz.origen, anchoDelPanel)
            onCerrado: raiz.cierra()
            onElegido: udid => {
                raiz.modelo.seleccionar(udid);
                raiz.cierra();
            }
        }
    }
}
