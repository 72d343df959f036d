import QtQuick
import Vellora.Componentes

/// Somebody's photo in a square with round corners; without one that can be read, his initials.
Item {
    id: raiz

    required property string nombre
    required property string foto
    readonly property string iniciales: raiz.nombre.split(/\s+/).filter(palabra => palabra !== "").slice(0, 2).map(palabra => Array.from(palabra)[0]).join("").toUpperCase()

    Rectangle {
        anchors.fill: parent
        visible: imagen.status !== Image.Ready
        radius: width / 2
        color: Tema.acentoSuave

        Texto {
            anchors.centerIn: parent
            font.pixelSize: Math.round(raiz.width * 0.38)
            font.weight: Font.DemiBold
            color: Tema.acentoTexto
            text: raiz.iniciales
            Accessible.ignored: true
        }
    }

    Image {
        id: imagen

        anchors.fill: parent
        asynchronous: true
        source: raiz.foto
        sourceSize.width: raiz.width * 2
        sourceSize.height: raiz.height * 2
        fillMode: Image.PreserveAspectCrop
    }
}
