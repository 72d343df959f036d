import QtQuick
import Vellora.Componentes

/// The log of a job as text that can be selected and copied; it follows the last line unless the reader has gone up.
Rectangle {
    id: raiz

    required property var lineas
    property real altoMaximo: 220

    implicitHeight: Math.max(48, Math.min(raiz.altoMaximo, texto.implicitHeight + 20))
    radius: 8
    color: Tema.fondo
    border.width: texto.activeFocus ? 2 : 1
    border.color: texto.activeFocus ? Tema.acento : Tema.borde

    Desplazable {
        id: rollo

        property bool sigue: true

        anchors.fill: parent
        anchors.margins: 1
        contentHeight: texto.height + 18
        onMovementEnded: sigue = contentY >= contentHeight - height - 24
        onContentHeightChanged: if (sigue) contentY = Math.max(0, contentHeight - height)

        TextEdit {
            id: texto

            readonly property string entero: raiz.lineas.join("\n")

            // New lines wait while something is selected: to set the text anew would lose the selection.
            function ponAlDia() {
                if (selectedText === "" && text !== entero)
                    text = entero;
            }

            x: 12
            y: 9
            width: parent.width - 24
            readOnly: true
            selectByMouse: true
            activeFocusOnTab: true
            wrapMode: TextEdit.Wrap
            textFormat: TextEdit.PlainText
            font.pixelSize: 12
            color: Tema.texto
            selectionColor: Tema.acento
            selectedTextColor: Tema.sobreAcento
            Component.onCompleted: ponAlDia()
            onEnteroChanged: ponAlDia()
            onSelectedTextChanged: ponAlDia()
            Accessible.role: Accessible.EditableText
            Accessible.name: "Detalles"
            Accessible.readOnly: true
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        }
    }
}
