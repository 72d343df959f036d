import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// Name and facts of the selected phone; with several connected it is the button that opens the chooser.
BotonBase {
    id: raiz

    required property dispositivo iphone
    required property bool variosIPhones

    activo: raiz.variosIPhones
    nombre: raiz.iphone.nombre + ". Elegir otro iPhone"
    ayuda: raiz.variosIPhones ? "Elegir otro iPhone" : ""
    Accessible.ignored: !raiz.variosIPhones
    implicitWidth: letras.x + Math.max(nombre.implicitWidth, datos.implicitWidth) + (raiz.variosIPhones ? 36 : 0)
    implicitHeight: 48

    Rectangle {
        anchors.fill: parent
        radius: raiz.radio
        visible: raiz.variosIPhones && raiz.encima
        color: Tema.fondo
    }

    Icono {
        x: 9
        anchors.verticalCenter: parent.verticalCenter
        lado: 26
        simbolo: "iphone.gen3"
        color: Tema.suave
    }

    Column {
        id: letras

        x: 50
        width: Math.min(parent.width - x - (raiz.variosIPhones ? 36 : 0), Math.max(nombre.implicitWidth, datos.implicitWidth))
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Texto {
            id: nombre

            width: parent.width
            tipo: Texto.Seccion
            elide: Text.ElideRight
            text: raiz.iphone.nombre
        }

        Texto {
            id: datos

            width: parent.width
            tipo: Texto.Menor
            elide: Text.ElideRight
            text: Rotulos.resumen(raiz.iphone)
        }
    }

    Icono {
        x: letras.x + letras.width + 12
        anchors.verticalCenter: parent.verticalCenter
        visible: raiz.variosIPhones
        lado: 12
        simbolo: visible ? "chevron.down" : ""
        color: Tema.suave
    }
}
