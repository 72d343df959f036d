pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The questions before photos leave the phone, and what is told afterwards.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property Fotos fotos: raiz.programa.fotos
    readonly property SeleccionFotos seleccion: raiz.programa.seleccion

    focus: true

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.fotos.confirmandoLiberar

        HojaDeConfirmar {
            titulo: "¿Borrar del iPhone lo que ya está en el Mac?"
            texto: raiz.fotos.preguntaDeLiberar
            textoDeAceptar: "Borrar del iPhone"
            textoDeDejar: "No tocar nada"
            onCerrada: raiz.programa.resolverLiberar(false)
            onAceptada: raiz.programa.resolverLiberar(true)
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.fotos.confirmandoBorrarTodas

        HojaDeConfirmar {
            titulo: "¿Borrar TODAS las fotos del iPhone, sin dejar rastro?"
            texto: raiz.programa.preguntaDeBorrarTodas
            textoDeAceptar: "Borrarlo todo"
            textoDeDejar: "No borrar nada"
            onCerrada: raiz.programa.resolverBorrarTodas(false)
            onAceptada: raiz.programa.resolverBorrarTodas(true)
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.seleccion.confirmandoBorrar

        HojaDeConfirmar {
            titulo: "¿Borrar del iPhone lo que has marcado?"
            texto: raiz.seleccion.preguntaDeBorrar
            textoDeAceptar: "Borrar del iPhone"
            textoDeDejar: "No borrar nada"
            onCerrada: raiz.programa.resolverBorrarMarcadas(false)
            onAceptada: raiz.programa.resolverBorrarMarcadas(true)
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.seleccion.mensaje !== ""

        HojaDeAviso {
            texto: raiz.seleccion.mensaje
            onCerrada: raiz.seleccion.quitarMensaje()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.fotos.aviso !== ""

        HojaDeAviso {
            texto: raiz.fotos.aviso
            onCerrada: raiz.fotos.cerrarAviso()
        }
    }
}
