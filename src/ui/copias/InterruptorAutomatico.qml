import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The weekly backup, which the system makes by itself.
Column {
    id: raiz

    required property Programa programa
    readonly property CopiasAutomaticas automaticas: raiz.programa.automaticas

    spacing: 4
    Component.onCompleted: raiz.automaticas.mirarSemanal()

    Interruptor {
        width: parent.width
        titulo: "Copia de seguridad automática"
        pie: "Cada semana, sola, cuando el iPhone esté conectado" + (raiz.automaticas.edad !== "" ? "\n" + raiz.automaticas.edad : "") + (raiz.automaticas.semanal && raiz.automaticas.ultimaSemanal !== "" ? "\n" + raiz.automaticas.ultimaSemanal : "")
        encendido: raiz.automaticas.semanal
        ocupado: raiz.automaticas.ocupada
        // Which phone it is for is fixed when it is switched on.
        activo: !ocupado && (raiz.automaticas.semanal || raiz.programa.modelo.hayIPhone)
        onPulsado: raiz.automaticas.ponSemanal(!raiz.automaticas.semanal)
    }

    Tira {
        width: parent.width
        clase: raiz.automaticas.semanal ? Tira.Informa : Tira.Aviso
        texto: raiz.automaticas.aviso
    }
}
