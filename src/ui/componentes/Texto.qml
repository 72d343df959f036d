import QtQuick
import Vellora.Componentes

/// Words in one of the window's sizes.
Text {
    id: raiz

    enum Tipo { Cuerpo, Menor, Seccion, Titulo, Grupo }

    property int tipo: Texto.Cuerpo

    readonly property var medidas: [[14, Font.Normal], [12, Font.Normal], [15, Font.DemiBold], [22, Font.Bold], [11, Font.DemiBold]]

    color: raiz.tipo === Texto.Menor || raiz.tipo === Texto.Grupo ? Tema.suave : Tema.texto
    font.pixelSize: raiz.medidas[raiz.tipo][0]
    font.weight: raiz.medidas[raiz.tipo][1]
    font.letterSpacing: raiz.tipo === Texto.Grupo ? 0.6 : 0
    // Inter's own lines are 17 pixels at 14; the design asks for 20.
    lineHeight: raiz.wrapMode === Text.NoWrap ? 1 : 1.17
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: raiz.text
}
