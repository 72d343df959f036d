import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The program's window.
Window {
    id: raiz

    required property Modelo modelo
    required property Copias copias
    /// What must be installed before anything works; empty when all is there.
    required property list<string> falta

    width: 1280
    height: 820
    minimumWidth: 960
    minimumHeight: 640
    visible: true
    title: "Vellora"
    color: Tema.fondo

    VistaPrincipal {
        anchors.fill: parent
        modelo: raiz.modelo
        copias: raiz.copias
        falta: raiz.falta
        focus: true
    }
}
