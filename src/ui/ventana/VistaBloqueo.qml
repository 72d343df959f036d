import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// What is seen while the program is locked: nothing of the owner's.
Rectangle {
    id: raiz

    required property Cerradura cerradura

    color: Tema.fondo

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 64, 420)
        spacing: 14

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 72
            height: 72
            radius: 18
            gradient: Gradient {
                orientation: Gradient.Horizontal

                GradientStop {
                    position: 0
                    color: "#2F6BE8"
                }
                GradientStop {
                    position: 1
                    color: "#7A5AE0"
                }
            }

            Icono {
                anchors.centerIn: parent
                lado: 34
                simbolo: "lock.fill"
                color: "#FFFFFF"
            }
        }

        Texto {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            tipo: Texto.Titulo
            text: "Vellora"
            Accessible.role: Accessible.Heading
        }

        Texto {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            color: Tema.suave
            wrapMode: Text.Wrap
            text: "Para entrar hace falta " + raiz.cerradura.metodo
        }

        Item {
            width: parent.width
            height: 36

            Boton {
                anchors.centerIn: parent
                visible: !raiz.cerradura.comprobando
                focus: true
                clase: Boton.Principal
                texto: "Desbloquear"
                onPulsado: raiz.cerradura.abrir()
                onVisibleChanged: if (visible) forceActiveFocus()
                Component.onCompleted: forceActiveFocus()
            }

            BarraDeProgreso {
                anchors.centerIn: parent
                width: 160
                visible: raiz.cerradura.comprobando
                Accessible.name: "Esperando"
            }
        }

        Texto {
            width: parent.width
            visible: text !== ""
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            color: Tema.malTexto
            text: raiz.cerradura.motivoFallo
            Accessible.role: Accessible.AlertMessage
        }

        Texto {
            width: parent.width
            topPadding: 12
            horizontalAlignment: Text.AlignHCenter
            tipo: Texto.Menor
            wrapMode: Text.Wrap
            text: "Todo se queda en este Mac: sin nube, sin cuentas y sin internet."
        }
    }
}
