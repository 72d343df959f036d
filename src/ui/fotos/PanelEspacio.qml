import QtQuick
import Vellora.Componentes
import Vellora.Fotos
import Vellora.Sesion

/// Room on the phone, and how to get more of it.
Pagina {
    id: raiz

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo

    titulo: "Espacio"

    Tira {
        width: parent.width
        texto: raiz.programa.fotos.pocoSitio
    }

    RejillaDeBotones {
        id: rejilla

        width: parent.width
        columns: Math.min(3, raiz.columnas)

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: raiz.modelo.hayIPhone && !raiz.modelo.tarea.enMarcha
            simbolo: "trash"
            titulo: "Liberar espacio"
            pie: "Borra del iPhone lo ya copiado"
            onPulsado: raiz.programa.fotos.prepararLiberacion()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: false
            simbolo: "chart.pie"
            titulo: "Qué ocupa cada cosa"
            pie: "Fotos, apps y sistema"
            insignia: "Pronto"
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: false
            simbolo: "doc.on.doc"
            titulo: "Buscar repetidas"
            pie: "En lo que ya está copiado"
            insignia: "Pronto"
        }
    }

    CajaCarpetaFotos {
        width: parent.width
        fotos: raiz.programa.fotos
    }
}
