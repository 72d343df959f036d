import QtQuick
import Vellora.Componentes

/// A sentence for the owner on a tinted strip. Without words it takes no room.
Rectangle {
    id: raiz

    enum Clase { Aviso, Mal, Informa }

    property int clase: Tira.Aviso
    property string texto

    visible: raiz.texto !== ""
    implicitHeight: raiz.visible ? letrero.height + 20 : 0
    radius: 8
    color: [Tema.fondoAviso, Tema.fondoMal, Tema.acentoSuave][raiz.clase]

    Icono {
        x: 15
        y: 11
        lado: 18
        simbolo: raiz.clase === Tira.Informa ? "info.circle.fill" : "exclamationmark.triangle.fill"
        color: [Tema.aviso, Tema.mal, Tema.acento][raiz.clase]
    }

    Texto {
        id: letrero

        x: 46
        y: 10
        width: parent.width - 62
        wrapMode: Text.Wrap
        text: raiz.texto
        Accessible.role: Accessible.AlertMessage
    }
}
