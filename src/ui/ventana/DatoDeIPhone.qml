import QtQuick
import Vellora.Componentes

/// One fact of a phone: what it is over its value. Without a value it says so.
Column {
    id: raiz

    required property string nombre
    required property string valor

    spacing: 4
    Accessible.role: Accessible.StaticText
    Accessible.name: raiz.nombre + ": " + (raiz.valor === "" ? "sin dato" : raiz.valor)

    Texto {
        width: parent.width
        tipo: Texto.Menor
        elide: Text.ElideRight
        text: raiz.nombre
        Accessible.ignored: true
    }

    Texto {
        width: parent.width
        font.weight: Font.Medium
        wrapMode: Text.Wrap
        text: raiz.valor === "" ? "—" : raiz.valor
        Accessible.ignored: true
    }
}
