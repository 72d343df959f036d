import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// One photo of the roll, as large as the window. The arrows go to its neighbours, Escape back.
FocusScope {
    id: raiz

    required property SeleccionFotos seleccion
    property int fila: 0

    signal alCerrar

    function ve(a: int) {
        raiz.fila = Math.max(0, Math.min(raiz.seleccion.visibles - 1, a));
    }

    focus: true
    Component.onCompleted: raiz.forceActiveFocus()
    Keys.onEscapePressed: raiz.alCerrar()
    Keys.onLeftPressed: raiz.ve(raiz.fila - 1)
    Keys.onRightPressed: raiz.ve(raiz.fila + 1)
    Keys.onSpacePressed: raiz.seleccion.marcar(raiz.fila)

    Rectangle {
        anchors.fill: parent
        color: "#101216"

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onClicked: raiz.alCerrar()
            onWheel: wheel => wheel.accepted = true
        }
    }

    Image {
        id: foto

        anchors.fill: parent
        anchors.margins: 24
        anchors.bottomMargin: 72
        asynchronous: true
        fillMode: Image.PreserveAspectFit
        source: raiz.seleccion.imagenGrande(raiz.fila)
        sourceSize.width: 1600
        sourceSize.height: 1600
        Accessible.role: Accessible.Graphic
        Accessible.name: letrero.text
    }

    Icono {
        anchors.centerIn: foto
        visible: foto.status !== Image.Ready && foto.status !== Image.Loading
        lado: 48
        simbolo: "photo"
        color: "#73FFFFFF"
    }

    Texto {
        id: letrero

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 16
        width: parent.width - 120
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        color: "#FFFFFF"
        text: raiz.seleccion.descripcion(raiz.fila)
    }

    BotonDeSimbolo {
        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: raiz.fila > 0
        simbolo: "arrow.left"
        color: encima ? Tema.suave : "#FFFFFF"
        nombre: "Foto anterior"
        ayuda: "Foto anterior"
        onPulsado: raiz.ve(raiz.fila - 1)
    }

    BotonDeSimbolo {
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: raiz.fila < raiz.seleccion.visibles - 1
        simbolo: "chevron.right"
        color: encima ? Tema.suave : "#FFFFFF"
        nombre: "Foto siguiente"
        ayuda: "Foto siguiente"
        onPulsado: raiz.ve(raiz.fila + 1)
    }

    BotonDeSimbolo {
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 16
        simbolo: "xmark"
        color: encima ? Tema.suave : "#FFFFFF"
        nombre: "Cerrar"
        ayuda: "Cerrar (Escape)"
        onPulsado: raiz.alCerrar()
    }
}
