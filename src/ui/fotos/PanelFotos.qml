import QtQuick
import Vellora.Componentes
import Vellora.Fotos
import Vellora.Sesion

/// The phone's photos: bringing them here.
Pagina {
    id: raiz

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo

    titulo: "Fotos"

    CajaCarpetaFotos {
        width: parent.width
        fotos: raiz.programa.fotos
    }

    Texto {
        topPadding: 8
        tipo: Texto.Seccion
        text: "Traer y ordenar"
        Accessible.role: Accessible.Heading
    }

    RejillaDeBotones {
        id: rejilla

        width: parent.width
        columns: raiz.columnas

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: raiz.modelo.hayIPhone && !raiz.modelo.tarea.enMarcha
            simbolo: "square.and.arrow.down"
            titulo: "Copiar fotos y vídeos"
            pie: "Solo trae lo que falte"
            onPulsado: raiz.programa.fotos.copiar()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: raiz.modelo.hayIPhone && !raiz.modelo.tarea.enMarcha
            simbolo: "checklist"
            titulo: "Elegir fotos a mano"
            pie: "Marcar cuáles copiar o borrar"
            onPulsado: raiz.programa.seleccion.abrir()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            simbolo: "folder"
            titulo: "Ver mis fotos"
            pie: "Abrir la carpeta"
            onPulsado: raiz.programa.fotos.abrirCarpeta()
        }
    }
}
