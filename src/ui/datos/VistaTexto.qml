pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// A text as it is.
FocusScope {
    id: raiz

    required property TextoDeFichero texto

    signal alCerrar

    BarraDeVista {
        id: barra

        width: parent.width
        titulo: raiz.texto.nombre
        onVuelta: raiz.alCerrar()
    }

    Lista {
        id: lista

        anchors.top: barra.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        topMargin: 16
        bottomMargin: 20
        focus: true
        nombre: raiz.texto.nombre
        model: raiz.texto

        delegate: Texto {
            required property string texto

            x: 28
            width: Math.min(lista.width - 56, 860)
            height: Math.max(implicitHeight, 12)
            wrapMode: Text.Wrap
            text: texto
        }
    }

    Texto {
        anchors.centerIn: parent
        visible: lista.count === 0
        color: Tema.suave
        text: raiz.texto.cargando ? "Abriendo…" : "No hay nada escrito aquí"
    }
}
