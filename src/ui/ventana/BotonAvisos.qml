import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The bell: what is running and what went wrong and was not looked at.
BotonBase {
    id: raiz

    required property Diario diario
    readonly property int cuenta: raiz.diario.enMarcha + raiz.diario.fallidas

    nombre: "Avisos. " + raiz.diario.enMarcha + " en marcha, " + raiz.diario.fallidas + " con problemas"
    ayuda: raiz.diario.enMarcha === 0 ? "Ver lo que ha pasado" : raiz.diario.enMarcha + " en marcha"
    radio: 16
    implicitWidth: raiz.cuenta > 0 ? numero.x + numero.implicitWidth + 11 : 40
    implicitHeight: 32

    Rectangle {
        anchors.fill: parent
        radius: 16
        color: raiz.encima ? Tema.fondo : Tema.tarjeta
        border.width: 1
        border.color: Tema.borde
    }

    Icono {
        x: raiz.cuenta > 0 ? 11 : (raiz.width - width) / 2
        anchors.verticalCenter: parent.verticalCenter
        lado: 17
        simbolo: raiz.diario.enMarcha > 0 ? "bell.badge" : "bell"
        color: Tema.suave
    }

    Texto {
        id: numero

        x: 35
        anchors.verticalCenter: parent.verticalCenter
        visible: raiz.cuenta > 0
        tipo: Texto.Menor
        font.weight: Font.Bold
        color: Tema.acentoTexto
        text: raiz.cuenta
        Accessible.ignored: true
    }
}
