import QtQuick
import Vellora.Componentes

/// One saved password.
Tarjeta {
    id: raiz

    required property int index
    required property string donde
    required property string tipo
    required property string usuario
    required property string icono
    required property string clave
    required property bool alaVista

    signal ver(si: bool)
    signal copiar
    signal guardar

    implicitHeight: Math.max(columna.height, botones.height) + 24

    Icono {
        id: dibujo

        x: 16
        anchors.verticalCenter: parent.verticalCenter
        lado: 18
        simbolo: raiz.icono
        color: Tema.acento
    }

    Column {
        id: columna

        x: 50
        anchors.verticalCenter: parent.verticalCenter
        width: botones.x - x - 12
        spacing: 2

        Texto {
            width: parent.width
            elide: Text.ElideRight
            maximumLineCount: 1
            font.weight: Font.DemiBold
            text: raiz.donde
        }

        Texto {
            width: parent.width
            elide: Text.ElideRight
            maximumLineCount: 1
            tipo: Texto.Menor
            text: raiz.usuario !== "" ? raiz.tipo + " · " + raiz.usuario : raiz.tipo
        }

        TextEdit {
            width: parent.width
            visible: raiz.alaVista
            readOnly: true
            selectByMouse: true
            wrapMode: TextEdit.WrapAnywhere
            textFormat: TextEdit.PlainText
            color: Tema.texto
            selectionColor: Tema.acento
            selectedTextColor: Tema.sobreAcento
            font.family: "monospace"
            font.pixelSize: Tema.letra(Texto.Cuerpo)
            text: raiz.clave
            Accessible.name: "Contraseña de " + raiz.donde
        }

        Texto {
            visible: !raiz.alaVista
            text: "••••••••"
            Accessible.ignored: true
        }
    }

    Row {
        id: botones

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        BotonDeSimbolo {
            simbolo: raiz.alaVista ? "eye.slash" : "eye"
            nombre: (raiz.alaVista ? "Ocultarla: " : "Verla: ") + raiz.donde
            ayuda: raiz.alaVista ? "Ocultarla" : "Verla"
            onPulsado: raiz.ver(!raiz.alaVista)
        }

        BotonDeSimbolo {
            simbolo: "doc.on.doc"
            nombre: "Copiarla: " + raiz.donde
            ayuda: "Copiarla"
            onPulsado: raiz.copiar()
        }

        BotonDeSimbolo {
            simbolo: "square.and.arrow.down"
            nombre: "Guardarla en el Llavero de este Mac: " + raiz.donde
            ayuda: "Guardarla en el Llavero de este Mac"
            onPulsado: raiz.guardar()
        }
    }
}
