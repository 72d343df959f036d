pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// A long list: only what is seen exists. Its bar stands by rows, not by heights, so that it is true however tall each
/// row is, and leads anywhere at once.
ListView {
    id: raiz

    property string nombre
    readonly property int primera: Math.max(0, raiz.indexAt(1, raiz.contentY + 1))
    readonly property real parte: raiz.atYEnd ? 1 : raiz.count > 1 ? raiz.primera / (raiz.count - 1) : 0

    function pagina(cuantas: int) {
        raiz.contentY = Math.max(raiz.originY, Math.min(raiz.contentY + cuantas * raiz.height * 0.9, raiz.originY + raiz.contentHeight - raiz.height));
        raiz.returnToBounds();
    }

    clip: true
    reuseItems: true
    cacheBuffer: 400
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: raiz.count > 0
    keyNavigationEnabled: false
    Accessible.role: Accessible.List
    Accessible.name: raiz.nombre
    Keys.onPressed: tecla => {
        tecla.accepted = [Qt.Key_PageDown, Qt.Key_PageUp, Qt.Key_Home, Qt.Key_End].includes(tecla.key);
        if (tecla.key === Qt.Key_PageDown || tecla.key === Qt.Key_PageUp)
            raiz.pagina(tecla.key === Qt.Key_PageDown ? 1 : -1);
        else if (tecla.accepted)
            tecla.key === Qt.Key_End ? raiz.positionViewAtEnd() : raiz.positionViewAtBeginning();
    }

    Item {
        id: carril

        parent: raiz
        anchors.right: parent.right
        visible: raiz.contentHeight > raiz.height + 1
        width: 12
        height: parent.height

        Rectangle {
            id: asa

            x: 5
            y: raiz.parte * (carril.height - height)
            width: 5
            height: Math.max(28, carril.height * Math.min(1, raiz.height / Math.max(1, raiz.contentHeight)))
            radius: 2.5
            color: Tema.tenue
            opacity: raiz.moving || dedo.pressed || dedo.containsMouse ? 0.8 : 0.4
        }

        MouseArea {
            id: dedo

            function lleva(y: real) {
                const parte = Math.max(0, Math.min(1, (y - asa.height / 2) / Math.max(1, carril.height - asa.height)));
                if (parte >= 1)
                    raiz.positionViewAtEnd();
                else
                    raiz.positionViewAtIndex(Math.round(parte * (raiz.count - 1)), ListView.Beginning);
            }

            anchors.fill: parent
            hoverEnabled: true
            preventStealing: true
            onPressed: raton => dedo.lleva(raton.y)
            onPositionChanged: raton => {
                if (dedo.pressed)
                    dedo.lleva(raton.y);
            }
        }
    }
}
