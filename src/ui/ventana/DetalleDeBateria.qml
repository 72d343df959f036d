import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// What the battery has been through, line by line.
Column {
    id: raiz

    required property datosBateria pila

    FilaDeDato {
        width: parent.width
        nombre: "Salud"
        pie: "Capacidad que le queda"
        valor: raiz.pila.salud > 0 ? raiz.pila.salud + " %" : "—"
    }

    FilaDeDato {
        width: parent.width
        nombre: "Ciclos de carga gastados"
        valor: raiz.pila.ciclos
    }

    Item {
        width: parent.width
        height: 22

        BarraDeProgreso {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            valor: raiz.pila.vidaGastada
            Accessible.name: "Vida gastada: " + Math.round(raiz.pila.vidaGastada * 100) + " %"
        }
    }

    Texto {
        width: parent.width
        bottomPadding: 8
        tipo: Texto.Menor
        wrapMode: Text.Wrap
        lineHeight: 1.3
        text: "Los ciclos son la medida que de verdad envejece una batería: cada 1.000 ciclos completos se considera el final de su vida útil. Apple la cambia en garantía si baja del 80% antes de tiempo."
    }

    FilaDeDato {
        width: parent.width
        nombre: "Lo que admite ahora"
        valor: raiz.pila.maxima > 0 ? raiz.pila.maxima + " mAh" : "—"
    }

    FilaDeDato {
        width: parent.width
        nombre: "Capacidad de fábrica"
        pie: "Lo que admitía de nueva"
        valor: raiz.pila.disenio > 0 ? raiz.pila.disenio + " mAh" : "—"
    }

    FilaDeDato {
        width: parent.width
        nombre: "Ha perdido"
        pie: "La diferencia entre las dos"
        valor: raiz.pila.perdido + " mAh"
    }

    FilaDeDato {
        width: parent.width
        nombre: "Temperatura"
        valor: Rotulos.conDecimales(raiz.pila.grados, 1) + " °C"
    }

    FilaDeDato {
        width: parent.width
        nombre: "Voltaje"
        pie: "Lo normal es entre 3,6 y 4,4"
        valor: Rotulos.conDecimales(raiz.pila.voltios, 2) + " V"
    }

    FilaDeDato {
        width: parent.width
        visible: raiz.pila.minutosRestantes > 0 && !raiz.pila.cargando
        nombre: "Lo que dura"
        pie: "Al ritmo de uso de ahora"
        valor: Rotulos.duracion(raiz.pila.minutosRestantes)
    }

    FilaDeDato {
        width: parent.width
        nombre: "Fallos de conexión"
        pie: raiz.pila.desconexiones === 0 ? "Ninguno: la batería hace buen contacto" : "Ha perdido contacto alguna vez"
        valor: raiz.pila.desconexiones
    }
}
