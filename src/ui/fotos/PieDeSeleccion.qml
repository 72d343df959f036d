import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// What has been marked, and what can be done with it.
Rectangle {
    id: raiz

    required property SeleccionFotos seleccion
    property bool puede: true
    readonly property string cuantas: raiz.seleccion.marcados === 1 ? "1 marcada" : Number(raiz.seleccion.marcados).toLocaleString(Qt.locale("es_ES"), "f", 0) + " marcadas"
    readonly property string sinCopiar: raiz.seleccion.sinCopiarMarcados === 0 ? "" : raiz.seleccion.sinCopiarMarcados === 1 ? "1 no está copiada en el Mac" : raiz.seleccion.sinCopiarMarcados + " no están copiadas en el Mac"

    implicitHeight: 60
    color: Tema.tarjeta

    Rectangle {
        width: parent.width
        height: 1
        color: Tema.borde
    }

    Texto {
        id: cuenta

        x: 28
        anchors.verticalCenter: parent.verticalCenter
        font.weight: Font.DemiBold
        text: raiz.cuantas + " · " + raiz.seleccion.pesoMarcado
    }

    Texto {
        anchors.left: cuenta.right
        anchors.leftMargin: 14
        anchors.right: borrar.left
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        elide: Text.ElideRight
        color: Tema.malTexto
        text: raiz.sinCopiar
    }

    Boton {
        id: borrar

        anchors.right: parent.right
        anchors.rightMargin: 28
        anchors.verticalCenter: parent.verticalCenter
        activo: raiz.puede
        clase: Boton.Peligroso
        simbolo: "trash"
        texto: "Borrar del iPhone"
        onPulsado: raiz.seleccion.pedirBorrar()
    }
}
