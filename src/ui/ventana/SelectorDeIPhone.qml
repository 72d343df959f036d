pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The chooser among several connected phones.
Flotante {
    id: raiz

    required property var dispositivos
    required property string actual

    signal elegido(udid: string)

    nombre: "Elegir iPhone"
    altoDelPanel: columna.height + 12

    Column {
        id: columna

        x: 6
        y: 6
        width: parent.width - 12

        Repeater {
            model: raiz.dispositivos

            BotonBase {
                id: opcion

                required property dispositivo modelData
                required property int index
                readonly property bool elegida: opcion.modelData.id === raiz.actual

                width: columna.width
                height: 54
                focus: opcion.elegida
                nombre: opcion.modelData.nombre + ", " + Rotulos.resumen(opcion.modelData)
                Accessible.checked: opcion.elegida
                Component.onCompleted: if (opcion.elegida) forceActiveFocus()
                onPulsado: raiz.elegido(opcion.modelData.id)
                Keys.onDownPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
                Keys.onUpPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

                Rectangle {
                    anchors.fill: parent
                    radius: 8
                    color: opcion.elegida ? Tema.acentoSuave : Tema.fondo
                    visible: opcion.elegida || opcion.encima
                }

                Icono {
                    x: 12
                    anchors.verticalCenter: parent.verticalCenter
                    lado: 22
                    simbolo: "iphone.gen3"
                    color: opcion.elegida ? Tema.acentoTexto : Tema.suave
                }

                Column {
                    x: 46
                    width: parent.width - 46 - 36
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: 2

                    Texto {
                        width: parent.width
                        elide: Text.ElideRight
                        font.weight: Font.DemiBold
                        text: opcion.modelData.nombre
                        Accessible.ignored: true
                    }

                    Texto {
                        width: parent.width
                        elide: Text.ElideRight
                        tipo: Texto.Menor
                        text: Rotulos.resumen(opcion.modelData)
                        Accessible.ignored: true
                    }
                }

                Icono {
                    anchors.right: parent.right
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    visible: opcion.elegida
                    simbolo: "checkmark"
                    color: Tema.acentoTexto
                }
            }
        }
    }
}
