pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Fotos
import Vellora.Sesion

/// The photos on show, as many in a row as fit. Arrows move, the space bar marks, Return shows one large.
GridView {
    id: raiz

    required property SeleccionFotos seleccion
    property real lado: 140
    readonly property int columnas: Math.max(2, Math.floor((raiz.width - 4) / (raiz.lado + 8)))

    signal mirada(fila: int)

    function pagina(cuantas: int) {
        const filas = Math.max(1, Math.floor(raiz.height / raiz.cellHeight));
        raiz.currentIndex = Math.max(0, Math.min(raiz.count - 1, raiz.currentIndex + cuantas * filas * raiz.columnas));
    }

    clip: true
    // The ring round a photo of the first row or column needs room too.
    leftMargin: 4
    topMargin: 4
    reuseItems: true
    cacheBuffer: 600
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: raiz.count > 0
    highlightMoveDuration: 0
    cellWidth: Math.floor((raiz.width - 4) / raiz.columnas)
    cellHeight: raiz.cellWidth
    model: raiz.seleccion
    // A new list begins at its first photo.
    onCountChanged: if (currentIndex < 0 && count > 0) currentIndex = 0
    Accessible.role: Accessible.List
    Accessible.name: "Fotos del iPhone"
    Keys.onSpacePressed: raiz.seleccion.marcar(raiz.currentIndex)
    Keys.onReturnPressed: raiz.mirada(raiz.currentIndex)
    Keys.onEnterPressed: raiz.mirada(raiz.currentIndex)
    Keys.onPressed: tecla => {
        tecla.accepted = [Qt.Key_PageDown, Qt.Key_PageUp, Qt.Key_Home, Qt.Key_End].includes(tecla.key);
        if (tecla.key === Qt.Key_PageDown || tecla.key === Qt.Key_PageUp)
            raiz.pagina(tecla.key === Qt.Key_PageDown ? 1 : -1);
        else if (tecla.accepted)
            raiz.currentIndex = tecla.key === Qt.Key_Home ? 0 : raiz.count - 1;
    }

    delegate: CeldaDeFoto {
        width: raiz.cellWidth
        height: raiz.cellHeight
        enfocada: raiz.activeFocus && raiz.currentIndex === index
        onPulsada: {
            raiz.currentIndex = index;
            raiz.seleccion.marcar(index);
        }
        onAbierta: raiz.mirada(index)
    }

    Rectangle {
        parent: raiz
        anchors.right: parent.right
        visible: raiz.contentHeight > raiz.height + 1
        y: raiz.visibleArea.yPosition * raiz.height
        width: 5
        height: Math.max(28, raiz.visibleArea.heightRatio * raiz.height)
        radius: 2.5
        color: Tema.tenue
        opacity: raiz.moving ? 0.8 : 0.4
    }
}
