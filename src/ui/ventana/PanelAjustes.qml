import QtQuick
import Vellora.Componentes
import Vellora.Copias
import Vellora.Sesion
import Vellora.Ventana

/// What the owner may choose.
Pagina {
    id: raiz

    required property Programa programa

    titulo: "Ajustes"

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "Apariencia"

        Opciones {
            nombre: "Tema"
            opciones: [
                {
                    valor: "",
                    texto: "Como el sistema"
                },
                {
                    valor: "claro",
                    texto: "Claro"
                },
                {
                    valor: "oscuro",
                    texto: "Oscuro"
                }
            ]
            valor: raiz.programa.ajustes.tema
            onElegida: valor => raiz.programa.ajustes.tema = valor
        }

        Interruptor {
            width: parent.width
            titulo: "Icono en la barra"
            pie: raiz.programa.ajustes.hayBarra ? "Junto al reloj, con lo que más se usa" : "Este escritorio no tiene sitio para iconos junto al reloj"
            encendido: raiz.programa.ajustes.iconoEnLaBarra
            activo: raiz.programa.ajustes.hayBarra
            onPulsado: raiz.programa.ajustes.iconoEnLaBarra = !raiz.programa.ajustes.iconoEnLaBarra
        }

        Interruptor {
            width: parent.width
            titulo: "Seguir en la barra al cerrar la ventana"
            pie: "La copia en cuanto lo enchufo solo funciona con la app abierta"
            encendido: raiz.programa.ajustes.seguirEnLaBarra
            activo: raiz.programa.ajustes.hayBarra && raiz.programa.ajustes.iconoEnLaBarra
            onPulsado: raiz.programa.ajustes.seguirEnLaBarra = !raiz.programa.ajustes.seguirEnLaBarra
        }
    }

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "Copias"

        InterruptorAutomatico {
            width: parent.width
            programa: raiz.programa
        }

        InterruptorAlEnchufar {
            width: parent.width
            automaticas: raiz.programa.automaticas
        }
    }

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "Avisos"

        AvisoTelegram {
            width: parent.width
            telegram: raiz.programa.telegram
        }
    }

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "Dónde se guarda"

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.WrapAnywhere
            text: raiz.programa.modelo.carpetaBaseEnVista
        }

        Boton {
            texto: "Abrir mi carpeta"
            simbolo: "folder"
            onPulsado: raiz.programa.abrirMiCarpeta()
        }
    }

    GrupoDeAjustes {
        width: Math.min(parent.width, 760)
        titulo: "Seguridad"

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.Wrap
            text: raiz.programa.cerradura.promesa
        }

        Boton {
            texto: "Bloquear ahora"
            simbolo: "lock.fill"
            onPulsado: raiz.programa.cerradura.cerrarAhora()
        }
    }
}
