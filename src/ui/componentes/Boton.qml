import QtQuick
import Vellora.Componentes

/// A button with words: filled for the main action, bordered for others, quiet for links, red for what cannot be undone.
BotonBase {
    id: raiz

    enum Clase { Normal, Principal, Callado, Peligroso }

    property int clase: Boton.Normal
    property string texto
    property string simbolo

    readonly property color tinta: {
        if (raiz.clase === Boton.Principal)
            return Tema.sobreAcento;
        if (raiz.clase === Boton.Peligroso)
            return Tema.malTexto;
        return raiz.clase === Boton.Callado ? Tema.acentoTexto : Tema.texto;
    }

    nombre: raiz.texto
    implicitWidth: fila.implicitWidth + (raiz.clase === Boton.Callado ? 16 : 28)
    implicitHeight: raiz.clase === Boton.Callado ? 28 : 32
    opacity: raiz.activo ? 1 : 0.45

    Rectangle {
        anchors.fill: parent
        radius: raiz.radio
        color: {
            if (raiz.clase === Boton.Principal)
                return raiz.apretado || raiz.encima ? Qt.darker(Tema.acento, raiz.apretado ? 1.15 : 1.07) : Tema.acento;
            if (raiz.clase === Boton.Peligroso)
                return Tema.fondoMal;
            if (raiz.apretado || raiz.encima)
                return raiz.clase === Boton.Callado ? Tema.acentoSuave : Tema.fondo;
            return raiz.clase === Boton.Callado ? "transparent" : Tema.tarjeta;
        }
        border.width: raiz.clase === Boton.Normal || raiz.clase === Boton.Peligroso ? 1 : 0
        border.color: raiz.clase === Boton.Peligroso ? Tema.mal : Tema.borde
    }

    Row {
        id: fila

        anchors.centerIn: parent
        spacing: 6

        Icono {
            anchors.verticalCenter: parent.verticalCenter
            visible: raiz.simbolo !== ""
            lado: 14
            simbolo: raiz.simbolo
            color: raiz.tinta
        }

        Texto {
            tipo: raiz.clase === Boton.Callado ? Texto.Menor : Texto.Cuerpo
            font.weight: raiz.clase === Boton.Callado ? Font.Medium : Font.DemiBold
            color: raiz.tinta
            text: raiz.texto
            Accessible.ignored: true
        }
    }
}
