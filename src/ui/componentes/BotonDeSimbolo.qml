import QtQuick
import Vellora.Componentes

/// A button that shows only a symbol: `nombre` says it aloud, `ayuda` on pointing.
BotonBase {
    id: raiz

    required property string simbolo
    property color color: Tema.suave
    property real lado: 16

    implicitWidth: 32
    implicitHeight: 32
    opacity: raiz.activo ? 1 : 0.45

    Rectangle {
        anchors.fill: parent
        radius: raiz.radio
        visible: raiz.encima || raiz.apretado
        color: Tema.fondo
        border.width: 1
        border.color: Tema.borde
    }

    Icono {
        anchors.centerIn: parent
        lado: raiz.lado
        simbolo: raiz.simbolo
        color: raiz.color
    }
}
