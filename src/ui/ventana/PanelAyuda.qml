pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// What the program does and does not, where things are, and whose work it stands on.
Pagina {
    id: raiz

    required property Programa programa

    titulo: "Ayuda y legal"

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "Qué hace"

        ParrafoDeAyuda {
            text: "Hace copias de seguridad completas del iPhone, las convierte en archivos normales (mensajes, WhatsApp, contactos, notas y lo demás) y las devuelve al iPhone."
        }

        ParrafoDeAyuda {
            text: "Todo se queda en este ordenador: sin nube, sin cuentas y sin internet. Lo único que puede salir es un aviso por Telegram, y solo si tú lo enciendes."
        }
    }

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "Qué no hace"

        ParrafoDeAyuda {
            text: "No recupera lo que nunca estuvo en una copia, no abre un iPhone bloqueado, y no puede abrir una copia cifrada sin su contraseña: si la pierdes, nadie puede."
        }

        ParrafoDeAyuda {
            text: "No es de Apple ni tiene que ver con ella."
        }
    }

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "Dónde está cada cosa"

        FilaDeDato {
            width: parent.width
            nombre: "Tus copias y tus datos"
            valor: raiz.programa.modelo.carpetaBaseEnVista
        }

        FilaDeDato {
            width: parent.width
            nombre: "La contraseña de las copias"
            valor: "En el Llavero de tu sesión"
        }
    }

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "En qué se apoya"

        FilaDeDato {
            width: parent.width
            nombre: "Vellora " + raiz.programa.version
            pie: "Software libre: puedes usarla, estudiarla, cambiarla y compartirla"
            valor: "GPL-3.0 o posterior"
        }

        Repeater {
            model: raiz.programa.piezas

            FilaDeDato {
                required property var modelData

                width: parent ? parent.width : 0
                nombre: modelData.nombre
                pie: modelData.para
                valor: modelData.licencia
            }
        }
    }
}
