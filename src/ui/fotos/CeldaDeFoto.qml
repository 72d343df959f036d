pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// One photo of the roll: its small picture as soon as it is there, what it is, and whether it is marked.
Item {
    id: raiz

    required property int index
    required property string nombre
    required property url miniatura
    required property bool video
    required property bool vivo
    required property bool retocada
    required property bool copiado
    required property string estado
    required property bool marcada
    property real hueco: 8
    property bool enfocada: false

    readonly property string enPalabras: {
        const partes = [raiz.video ? "Vídeo" : raiz.vivo ? "Foto en vivo" : "Foto", raiz.nombre];
        if (raiz.retocada)
            partes.push("retocada");
        if (raiz.estado !== "visible")
            partes.push(raiz.estado === "oculta" ? "oculta" : "en la papelera");
        partes.push(raiz.copiado ? "copiada en el Mac" : "sin copiar");
        return partes.join(", ");
    }
    readonly property list<string> senales: {
        const lista = [];
        if (raiz.video || raiz.vivo)
            lista.push(raiz.video ? "play.fill" : "livephoto");
        if (raiz.retocada)
            lista.push("wand.and.stars");
        if (raiz.estado !== "visible")
            lista.push(raiz.estado === "oculta" ? "eye.slash" : "trash");
        return lista;
    }

    signal pulsada
    signal abierta

    Accessible.role: Accessible.CheckBox
    Accessible.name: raiz.enPalabras
    Accessible.checkable: true
    Accessible.checked: raiz.marcada
    Accessible.onPressAction: raiz.pulsada()

    Item {
        id: cuadro

        // By steps, so that dragging the size does not make every picture anew at each point.
        readonly property int puntos: Math.ceil(cuadro.width / 40) * 40

        width: raiz.width - raiz.hueco
        height: raiz.height - raiz.hueco

        Rectangle {
            anchors.fill: parent
            radius: width * 0.06
            visible: foto.status !== Image.Ready
            color: Tema.borde

            Icono {
                anchors.centerIn: parent
                lado: Math.min(28, parent.width / 3)
                simbolo: raiz.video ? "video" : "photo"
                color: Tema.tenue
            }
        }

        Image {
            id: foto

            anchors.fill: parent
            asynchronous: true
            source: raiz.miniatura
            sourceSize.width: cuadro.puntos
            sourceSize.height: cuadro.puntos
            opacity: raiz.estado === "visible" ? 1 : 0.55
        }

        Rectangle {
            anchors.fill: parent
            radius: width * 0.06
            visible: raiz.marcada
            color: Qt.rgba(Tema.acento.r, Tema.acento.g, Tema.acento.b, 0.25)
            border.width: 3
            border.color: Tema.acento
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            visible: raiz.enfocada
            radius: cuadro.width * 0.06 + 3
            color: "transparent"
            border.width: 2
            border.color: Tema.acento
        }

        Row {
            anchors.left: parent.left
            anchors.bottom: parent.bottom
            anchors.margins: 6
            spacing: 4

            Repeater {
                model: raiz.senales

                Rectangle {
                    required property string modelData

                    width: 20
                    height: 20
                    radius: 10
                    color: "#99000000"

                    Icono {
                        anchors.centerIn: parent
                        lado: 12
                        simbolo: parent.modelData
                        color: "#FFFFFF"
                    }
                }
            }
        }

        Icono {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: 6
            visible: raiz.copiado
            lado: 18
            simbolo: "checkmark.circle.fill"
            color: Tema.bien
        }

        Rectangle {
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: 6
            width: 22
            height: 22
            radius: 11
            visible: raiz.marcada || raton.containsMouse || raiz.enfocada
            color: raiz.marcada ? Tema.acento : "#99000000"
            border.width: 2
            border.color: "#FFFFFF"

            Icono {
                anchors.centerIn: parent
                visible: raiz.marcada
                lado: 12
                simbolo: "checkmark"
                color: "#FFFFFF"
            }
        }

        MouseArea {
            id: raton

            anchors.fill: parent
            hoverEnabled: true
            cursorShape: Qt.PointingHandCursor
            onClicked: raiz.pulsada()
            onDoubleClicked: raiz.abierta()
        }
    }
}
