import QtQuick
import Vellora.Componentes
import Vellora.Sesion
import Vellora.Ventana

/// The selected phone at a glance, and what is done most.
Pagina {
    id: raiz

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo
    readonly property Copias copias: raiz.programa.copias
    readonly property dispositivo iphone: raiz.modelo.seleccionado

    titulo: "Resumen"

    Tira {
        width: parent.width
        clase: Tira.Mal
        texto: raiz.modelo.avisoAcceso
    }

    Tira {
        width: parent.width
        clase: Tira.Mal
        texto: raiz.modelo.avisoCallados
    }

    Tira {
        width: parent.width
        texto: raiz.copias.aviso
    }

    FichaDeIPhone {
        width: parent.width
        iphone: raiz.iphone
        ultimaCopia: raiz.copias.ultimaCopia
    }

    TarjetaRed {
        width: parent.width
        datos: raiz.programa.bateria
    }

    Texto {
        topPadding: 4
        tipo: Texto.Seccion
        text: "Lo que más se usa"
        Accessible.role: Accessible.Heading
    }

    RejillaDeBotones {
        id: rejilla

        width: parent.width
        columns: raiz.columnas

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: !raiz.modelo.tarea.enMarcha
            simbolo: "square.and.arrow.down"
            titulo: "Copiar fotos y vídeos"
            pie: "Solo trae lo que falte"
            onPulsado: raiz.programa.fotos.copiar()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: !raiz.modelo.tarea.enMarcha
            simbolo: "externaldrive.badge.timemachine"
            titulo: "Hacer la copia ahora"
            pie: raiz.copias.pieDeHacerCopia
            onPulsado: raiz.copias.pedirCopia()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: !raiz.modelo.tarea.enMarcha
            simbolo: "trash"
            titulo: "Liberar espacio"
            pie: "Borra del iPhone lo ya copiado"
            onPulsado: raiz.programa.fotos.prepararLiberacion()
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
            activo: !raiz.modelo.tarea.enMarcha
            simbolo: "battery.100"
            titulo: "Mirar la batería"
            pie: raiz.programa.bateria.resumen
            onPulsado: raiz.programa.bateria.mirar()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            simbolo: "lock.fill"
            titulo: "Bloquear ahora"
            pie: raiz.programa.cerradura.promesaCorta
            onPulsado: raiz.programa.cerradura.cerrarAhora()
        }
    }
}
