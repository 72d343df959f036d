import QtQuick
import Vellora.Sesion
import Vellora.Ventana

/// What the window has in view, and what lies over it.
QtObject {
    id: raiz

    enum Panel { Ninguno, Avisos, IPhones }

    required property Modelo modelo
    required property Secciones secciones
    required property bool hayHerramientas

    property int seccion: Secciones.Resumen
    readonly property int contenido: raiz.secciones.contenido(raiz.seccion, raiz.hayHerramientas, raiz.modelo.hayIPhone)

    property int panel: EstadoDeVentana.Ninguno
    /// The control that opened the floating panel; it gets the keyboard back.
    property Item origen: null
    /// The UDID of the new phone whose welcome was closed without an answer; it is welcomed again when it comes back.
    property string aplazado
    readonly property bool deBienvenida: raiz.hayHerramientas && raiz.modelo.hayIPhoneNuevo && raiz.modelo.iPhoneNuevo.id !== raiz.aplazado
    readonly property bool hayCapa: raiz.deBienvenida || raiz.panel !== EstadoDeVentana.Ninguno

    readonly property bool hayIPhone: raiz.modelo.hayIPhone

    function abre(panel: int, boton: Item) {
        raiz.origen = boton;
        raiz.panel = panel;
        if (panel === EstadoDeVentana.Avisos)
            raiz.modelo.diario.darPorVisto();
    }

    function cierra() {
        if (raiz.panel === EstadoDeVentana.Avisos)
            raiz.modelo.diario.darPorVisto();
        raiz.panel = EstadoDeVentana.Ninguno;
        if (raiz.origen)
            raiz.origen.forceActiveFocus(Qt.PopupFocusReason);
    }

    onHayIPhoneChanged: {
        if (!raiz.hayIPhone)
            raiz.aplazado = "";
    }
}
