import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// Emptying the phone, and getting photos back out of a backup.
Pagina {
    id: raiz

    required property Programa programa
    readonly property Modelo modelo: raiz.programa.modelo
    readonly property bool hayCopia: raiz.programa.copias.ultimaCopia !== "nunca"
    readonly property bool puede: raiz.modelo.hayIPhone && !raiz.modelo.tarea.enMarcha

    titulo: "Vaciar el iPhone"

    Tira {
        width: parent.width
        texto: raiz.hayCopia ? "" : "No tienes copia de seguridad. Si borras cosas del iPhone ahora, no hay manera de recuperarlas."
    }

    RejillaDeBotones {
        id: rejilla

        width: parent.width
        columns: raiz.columnas

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: !raiz.modelo.tarea.enMarcha
            simbolo: "arrow.counterclockwise.circle"
            titulo: "Recuperar mis fotos"
            pie: "Sacarlas de la copia de seguridad"
            onPulsado: raiz.programa.recuperarFotos()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: raiz.puede
            simbolo: "trash.slash"
            titulo: "Borrar lo que ya está copiado"
            pie: "Deja intacto lo que no esté en el Mac"
            onPulsado: raiz.programa.fotos.prepararLiberacion()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: raiz.puede
            simbolo: "checklist"
            titulo: "Elegir cuáles borrar"
            pie: "Marcar solo las que quieras"
            onPulsado: raiz.programa.seleccion.abrir()
        }

        BotonGrande {
            width: rejilla.anchoDeCelda
            height: rejilla.altoDeCelda
            activo: raiz.puede
            peligroso: true
            simbolo: raiz.hayCopia ? "trash" : "lock.fill"
            titulo: "BORRAR TODAS las fotos"
            pie: raiz.hayCopia ? "Fotos, miniaturas y la lista: desaparecen de verdad" : "🔒 Bloqueado: primero pon tus fotos a salvo"
            onPulsado: raiz.programa.pedirBorrarTodas()
        }
    }

    Texto {
        topPadding: 8
        width: parent.width
        color: Tema.suave
        wrapMode: Text.Wrap
        text: "Borrar las fotos del iPhone requiere llevarse también la lista de la app Fotos y sus miniaturas: si no, se siguen viendo aunque ya no estén. Por eso, después de cualquiera de estos tres botones hay que REINICIAR el iPhone. Al arrancar, la app Fotos se reconstruye con lo que quede en el carrete."
    }

    Texto {
        width: parent.width
        color: Tema.suave
        wrapMode: Text.Wrap
        text: "Los datos de dentro de las apps (WhatsApp, notas…) no se pueden borrar desde el ordenador: Apple no lo permite. Lo único posible es desinstalar la app entera, desde «Apps»."
    }
}
