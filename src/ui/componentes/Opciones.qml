pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes

/// A choice of one among a few, side by side as far as the width allows.
Flow {
    id: raiz

    required property string nombre
    /// Pairs of `valor` and `texto`.
    required property var opciones
    required property string valor

    signal elegida(valor: string)

    spacing: 6
    Accessible.role: Accessible.Grouping
    Accessible.name: raiz.nombre

    Repeater {
        model: raiz.opciones

        BotonBase {
            id: opcion

            required property var modelData
            readonly property bool puesta: opcion.modelData.valor === raiz.valor

            nombre: opcion.modelData.texto
            implicitWidth: letrero.implicitWidth + 28
            implicitHeight: 32
            Accessible.role: Accessible.RadioButton
            Accessible.checkable: true
            Accessible.checked: opcion.puesta
            onPulsado: raiz.elegida(opcion.modelData.valor)

            Rectangle {
                anchors.fill: parent
                radius: 8
                color: opcion.puesta ? Tema.acentoSuave : opcion.encima ? Tema.fondo : "transparent"
                border.width: 1
                border.color: opcion.puesta ? Tema.acento : Tema.borde
            }

            Texto {
                id: letrero

                anchors.centerIn: parent
                font.weight: opcion.puesta ? Font.DemiBold : Font.Normal
                color: opcion.puesta ? Tema.acentoTexto : Tema.texto
                text: opcion.modelData.texto
                Accessible.ignored: true
            }
        }
    }
}
