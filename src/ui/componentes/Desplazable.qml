import QtQuick
import Vellora.Componentes

/// Content that scrolls when it is taller than its place, with a thin bar, and follows the keyboard's focus.
Flickable {
    id: raiz

    readonly property Item enfocado: Window.activeFocusItem

    function muestra(control: Item) {
        for (let item = control; item !== raiz.contentItem; item = item.parent) {
            if (!item)
                return;
        }
        const arriba = control.mapToItem(raiz.contentItem, 0, 0).y - 8;
        const abajo = arriba + control.height + 16;
        if (arriba < raiz.contentY)
            raiz.contentY = Math.max(0, arriba);
        else if (abajo > raiz.contentY + raiz.height)
            raiz.contentY = Math.min(abajo - raiz.height, Math.max(0, raiz.contentHeight - raiz.height));
    }

    contentWidth: width
    boundsBehavior: Flickable.StopAtBounds
    clip: contentHeight > height
    onEnfocadoChanged: if (enfocado) muestra(enfocado)

    Rectangle {
        parent: raiz
        visible: raiz.contentHeight > raiz.height + 1
        x: raiz.width - 7
        y: raiz.visibleArea.yPosition * raiz.height
        width: 5
        height: Math.max(24, raiz.visibleArea.heightRatio * raiz.height)
        radius: 2.5
        color: Tema.tenue
        opacity: raiz.moving ? 0.8 : 0.4
    }
}
