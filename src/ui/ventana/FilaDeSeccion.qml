pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// One section in the side list, under the heading of its group when it is the first of it.
Item {
    id: raiz

    required property int seccion
    required property string titulo
    required property string simbolo
    required property string cabecera
    required property string atajo
    required property bool necesitaCopia
    required property bool disponible
    property bool elegida: false
    property bool hayCopia: true

    readonly property bool cerrada: raiz.necesitaCopia && !raiz.hayCopia
    readonly property string cuando: raiz.disponible ? "" : "Todavía no disponible"
    readonly property string ayuda: raiz.cerrada ? (raiz.disponible ? "" : raiz.cuando + ". ") + "Necesita una copia de seguridad" : raiz.cuando
    readonly property color tinta: raiz.elegida ? Tema.acentoTexto : raiz.disponible ? Tema.texto : Tema.suave

    signal pulsada

    implicitHeight: fila.y + fila.height

    Cargador {
        x: 10
        y: 16
        activo: raiz.cabecera !== ""

        Texto {
            tipo: Texto.Grupo
            text: raiz.cabecera
            Accessible.role: Accessible.Heading
        }
    }

    HoverHandler {
        // A control that is off is not told of the pointer, so the row listens for it.
        enabled: !raiz.disponible
        onHoveredChanged: hovered ? Ayudas.muestra(fila, raiz.ayuda) : Ayudas.quita(fila)
    }

    BotonBase {
        id: fila

        y: raiz.cabecera !== "" ? 39 : 0
        width: parent.width
        height: 29
        activo: raiz.disponible
        nombre: raiz.disponible ? raiz.titulo : raiz.titulo + ", todavía no disponible"
        ayuda: raiz.ayuda
        Accessible.role: Accessible.ListItem
        Accessible.selected: raiz.elegida
        Accessible.selectable: raiz.disponible
        onPulsado: raiz.pulsada()
        Keys.onDownPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

        Rectangle {
            anchors.fill: parent
            radius: 8
            color: raiz.elegida ? Tema.acentoSuave : Tema.texto
            opacity: raiz.elegida ? 1 : fila.encima ? 0.05 : 0
        }

        Icono {
            x: 11
            anchors.verticalCenter: parent.verticalCenter
            lado: 17
            opacity: raiz.disponible ? 1 : 0.65
            simbolo: raiz.simbolo
            color: raiz.elegida ? Tema.acentoTexto : Tema.suave
        }

        Texto {
            x: 40
            anchors.verticalCenter: parent.verticalCenter
            color: raiz.tinta
            font.weight: raiz.elegida ? Font.DemiBold : Font.Normal
            text: raiz.titulo
            Accessible.ignored: true
        }

        Cargador {
            x: parent.width - 76
            anchors.verticalCenter: parent.verticalCenter
            activo: raiz.cerrada

            Icono {
                lado: 12
                simbolo: "lock.fill"
                color: Tema.suave
            }
        }

        Texto {
            x: parent.width - width - 10
            anchors.verticalCenter: parent.verticalCenter
            visible: text !== ""
            tipo: Texto.Menor
            color: raiz.elegida ? Tema.acentoTexto : Tema.suave
            text: raiz.atajo === "" ? "" : "Ctrl " + raiz.atajo
            Accessible.ignored: true
        }
    }
}
