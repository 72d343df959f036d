import QtQuick
import Vellora.Componentes

/// One message, under its day when it is the first of it.
Item {
    id: raiz

    required property bool mio
    required property string quien
    required property string hora
    required property string texto
    required property string dia
    required property int tono

    readonly property real anchoMayor: Math.min(560, raiz.width * 0.72)
    readonly property var tonosClaros: ["#0F7C70", "#8A4FBF", "#B4531A", "#2F6BE8", "#B03060", "#5C7A12"]
    readonly property var tonosOscuros: ["#2EC4B6", "#C792EA", "#F2A365", "#6C9BFF", "#F28AB2", "#B5D14A"]

    implicitHeight: (raiz.dia !== "" ? 40 : 0) + globo.height + 6
    Accessible.role: Accessible.ListItem
    Accessible.name: (raiz.mio ? "Yo" : raiz.quien) + ": " + raiz.texto + ". " + raiz.hora

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 6
        visible: raiz.dia !== ""
        width: letrero.implicitWidth + 24
        height: 24
        radius: 12
        color: Tema.lateral

        Texto {
            id: letrero

            anchors.centerIn: parent
            tipo: Texto.Menor
            text: raiz.dia
            Accessible.ignored: true
        }
    }

    Rectangle {
        id: globo

        x: raiz.mio ? raiz.width - width - 22 : 22
        y: raiz.dia !== "" ? 40 : 0
        width: Math.max(Math.ceil(cuerpo.contentWidth), Math.min(remitente.implicitWidth, raiz.anchoMayor - 24), cuando.implicitWidth) + 24
        height: cuando.y + cuando.height + 6
        radius: 12
        color: raiz.mio ? (Tema.oscuro ? "#2B5136" : "#DCF8C6") : (Tema.oscuro ? "#2C2F36" : Tema.tarjeta)
        border.width: raiz.mio || Tema.oscuro ? 0 : 1
        border.color: Tema.borde

        Texto {
            id: remitente

            x: 12
            y: 8
            width: parent.width - 24
            height: visible ? implicitHeight + 2 : 0
            visible: !raiz.mio && raiz.quien !== ""
            elide: Text.ElideRight
            maximumLineCount: 1
            tipo: Texto.Menor
            font.weight: Font.DemiBold
            color: Tema.oscuro ? raiz.tonosOscuros[raiz.tono] : raiz.tonosClaros[raiz.tono]
            text: raiz.quien
            Accessible.ignored: true
        }

        Texto {
            id: cuerpo

            x: 12
            y: remitente.visible ? remitente.y + remitente.height : 8
            width: raiz.anchoMayor - 24
            wrapMode: Text.Wrap
            color: Tema.oscuro ? Tema.texto : "#14171C"
            text: raiz.texto
            Accessible.ignored: true
        }

        Texto {
            id: cuando

            anchors.right: parent.right
            anchors.rightMargin: 12
            y: cuerpo.y + cuerpo.height + 2
            tipo: Texto.Menor
            color: raiz.mio && !Tema.oscuro ? "#4B6340" : Tema.suave
            text: raiz.hora
            Accessible.ignored: true
        }
    }
}
