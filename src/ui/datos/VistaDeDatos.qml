pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// What has been opened out of the result folder. Escape goes back.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property VisorDeDatos visor: raiz.programa.visor

    focus: true
    Keys.onEscapePressed: raiz.visor.volver()
    Component.onCompleted: raiz.forceActiveFocus()

    Rectangle {
        anchors.fill: parent
        color: Tema.fondo
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.visor.vista === VisorDeDatos.Inventario

        VistaMisDatos {
            programa: raiz.programa
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.visor.vista === VisorDeDatos.Chats

        VistaConversaciones {
            conversaciones: raiz.visor.conversaciones
            onAlCerrar: raiz.visor.volver()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.visor.vista === VisorDeDatos.Tabla

        VistaTabla {
            tabla: raiz.visor.tabla
            onAlCerrar: raiz.visor.volver()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.visor.vista === VisorDeDatos.Texto

        VistaTexto {
            texto: raiz.visor.texto
            onAlCerrar: raiz.visor.volver()
        }
    }
}
