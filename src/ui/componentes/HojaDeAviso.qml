import QtQuick
import Vellora.Componentes

/// Tells the owner something that must be read before going on.
Hoja {
    id: raiz

    required property string texto
    property string titulo

    nombre: raiz.titulo !== "" ? raiz.titulo : "Aviso"
    ancho: 480

    Column {
        width: parent.width
        spacing: 14

        Texto {
            width: parent.width - 32
            visible: text !== ""
            tipo: Texto.Titulo
            font.pixelSize: 20
            wrapMode: Text.Wrap
            text: raiz.titulo
            Accessible.role: Accessible.Heading
        }

        Texto {
            width: parent.width - (raiz.titulo === "" ? 32 : 0)
            wrapMode: Text.Wrap
            text: raiz.texto
        }

        Boton {
            anchors.right: parent.right
            focus: true
            clase: Boton.Principal
            texto: "Vale"
            Component.onCompleted: forceActiveFocus()
            onPulsado: raiz.cerrada()
        }
    }
}
