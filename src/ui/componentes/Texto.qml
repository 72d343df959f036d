import QtQuick
import Vellora.Componentes

/// Words in one of the window's sizes.
Text {
    id: raiz

    enum Tipo { Cuerpo, Menor, Seccion, Titulo, Grupo }

    property int tipo: Texto.Cuerpo

    color: raiz.tipo === Texto.Menor || raiz.tipo === Texto.Grupo ? Tema.suave : Tema.texto
    font.pixelSize: Tema.letra(raiz.tipo)
    font.weight: Tema.peso(raiz.tipo)
    // Inter's own lines are 17 pixels at 14; the design asks for 20.
    lineHeight: raiz.wrapMode === Text.NoWrap ? 1 : 1.17
    textFormat: Text.PlainText
    Accessible.name: raiz.text
}
