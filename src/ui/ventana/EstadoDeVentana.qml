import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// What the window has in view, and what lies over it.
QtObject {
    id: raiz

    enum Panel { Ninguno, Avisos, IPhones, Acciones, Salir }

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo
    readonly property Copias copias: raiz.programa.copias
    required property Secciones secciones
    required property bool hayHerramientas

    property int seccion: raiz.secciones.deInicio(raiz.programa.ajustes.seccion)
    /// While it is, nothing of the owner's is in view.
    readonly property bool bloqueada: raiz.hayHerramientas && !raiz.programa.cerradura.abierta
    readonly property int contenido: raiz.secciones.contenido(raiz.seccion, raiz.hayHerramientas, raiz.modelo.hayIPhone)

    /// What has been taken out of the backup stands in place of the section.
    readonly property bool hayVisor: raiz.programa.visor.vista !== VisorDeDatos.Ninguna || raiz.hayCarrete
    /// The phone's roll, to choose from.
    readonly property bool hayCarrete: raiz.programa.seleccion.abierta

    property int panel: EstadoDeVentana.Ninguno
    /// The control that opened the floating panel; it gets the keyboard back.
    property Item origen: null
    /// The UDID of the new phone whose welcome was closed without an answer; it is welcomed again when it comes back.
    property string aplazado
    readonly property string nuevo: raiz.modelo.hayIPhoneNuevo ? raiz.modelo.iPhoneNuevo.id : ""
    readonly property bool nuevoConectado: raiz.estaConectado(raiz.nuevo)
    readonly property bool deBienvenida: raiz.hayHerramientas && raiz.nuevoConectado && raiz.nuevo !== raiz.aplazado
    readonly property bool hayCapa: !raiz.bloqueada && (raiz.deBienvenida || raiz.copias.pidiendoClave || raiz.programa.devolucion.eligiendo || raiz.programa.telegram.pidiendoDatos || raiz.programa.bateria.verBateria || raiz.programa.contactos.hoja !== Contactos.SinHoja || raiz.hayPregunta || raiz.panel !== EstadoDeVentana.Ninguno)

    readonly property bool hayPregunta: raiz.programa.consentimiento.abierto || raiz.programa.consentimiento.aviso !== ""

    /// The owner has agreed to end the program.
    signal sale

    function estaConectado(udid: string): bool {
        for (const uno of raiz.modelo.dispositivos) {
            if (uno.id === udid)
                return true;
        }
        return false;
    }

    function abreSeccion(cual: int) {
        raiz.programa.visor.cerrar();
        raiz.programa.seleccion.cerrar();
        raiz.seccion = cual;
    }

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
        // Who comes back from the panel needs no help on what opened it.
        Ayudas.quita(raiz.origen);
    }

    onSeccionChanged: {
        raiz.programa.ajustes.seccion = raiz.seccion;
        raiz.programa.cerradura.marcarUso();
    }

    onNuevoConectadoChanged: {
        if (!raiz.nuevoConectado)
            raiz.aplazado = "";
    }
}
