import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The backup when a known phone is plugged in.
Column {
    id: raiz

    required property CopiasAutomaticas automaticas

    spacing: 4

    Interruptor {
        width: parent.width
        titulo: "Copia en cuanto lo enchufo"
        pie: "Al conectar el iPhone, si la última copia tiene más de un día, empieza una sola. Necesita la app abierta y el iPhone desbloqueado."
        encendido: raiz.automaticas.alEnchufar
        onPulsado: raiz.automaticas.ponAlEnchufar(!raiz.automaticas.alEnchufar)
    }

    Tira {
        width: parent.width
        texto: raiz.automaticas.avisoAlEnchufar
    }
}
