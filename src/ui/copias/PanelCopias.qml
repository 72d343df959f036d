import QtQuick
import Vellora.Componentes
import Vellora.Copias
import Vellora.Sesion

/// Backups: the warning, what a backup is for, and what can be done with it.
Pagina {
    id: raiz

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo
    readonly property Copias copias: raiz.programa.copias

    titulo: "Copias y datos"

    Tira {
        width: parent.width
        texto: raiz.copias.aviso
    }

    Texto {
        topPadding: 8
        tipo: Texto.Seccion
        text: "Copia de seguridad"
        Accessible.role: Accessible.Heading
    }

    Texto {
        width: parent.width
        color: Tema.suave
        wrapMode: Text.Wrap
        text: "La copia de seguridad es lo único que te devuelve los mensajes y WhatsApp si pierdes el iPhone. Las fotos van por su lado."
    }

    RejillaDeBotones {
        id: rejilla

        width: parent.width
        columns: raiz.columnas

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: raiz.modelo.hayIPhone && !raiz.modelo.tarea.enMarcha
            simbolo: "externaldrive.badge.timemachine"
            titulo: "Hacer la copia ahora"
            pie: raiz.copias.pieDeHacerCopia
            onPulsado: raiz.copias.pedirCopia()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: !raiz.modelo.tarea.enMarcha
            simbolo: "person.text.rectangle"
            titulo: "Ver mis datos"
            pie: "Mensajes, WhatsApp, fotos, contactos… dentro de la app"
            onPulsado: raiz.programa.verMisDatos()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            simbolo: "folder"
            titulo: "Ver la copia por dentro"
            pie: "Abrir la carpeta"
            onPulsado: raiz.copias.abrirCarpeta()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: raiz.modelo.hayIPhone && !raiz.modelo.tarea.enMarcha
            peligroso: true
            simbolo: "arrow.uturn.backward"
            titulo: "Devolver la copia al iPhone"
            pie: "Solo si has perdido los datos"
            onPulsado: raiz.programa.devolucion.pedir()
        }
    }

    Tarjeta {
        width: parent.width
        implicitHeight: guardadas.implicitHeight + 24
        height: implicitHeight

        CopiasQueSeGuardan {
            id: guardadas

            x: 20
            y: 12
            width: parent.width - 40
            guardadas: raiz.programa.guardadas
        }
    }

    Texto {
        topPadding: 8
        tipo: Texto.Seccion
        text: "Sin que te acuerdes"
        Accessible.role: Accessible.Heading
    }

    Tarjeta {
        width: parent.width
        implicitHeight: automaticas.implicitHeight + 24
        height: implicitHeight

        Column {
            id: automaticas

            x: 20
            y: 12
            width: parent.width - 40
            spacing: 6

            InterruptorAutomatico {
                width: parent.width
                programa: raiz.programa
            }

            InterruptorAlEnchufar {
                width: parent.width
                automaticas: raiz.programa.automaticas
            }

            AvisoTelegram {
                width: parent.width
                telegram: raiz.programa.telegram
            }
        }
    }
}
