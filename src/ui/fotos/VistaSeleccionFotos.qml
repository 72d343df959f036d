pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Fotos
import Vellora.Sesion

/// The phone's roll, one photo at a time: look, mark, delete. Escape goes back.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property SeleccionFotos seleccion: raiz.programa.seleccion
    readonly property string cuantas: raiz.seleccion.cuantos === 0 ? "" : Number(raiz.seleccion.visibles).toLocaleString(Qt.locale("es_ES"), "f", 0) + (raiz.seleccion.visibles === 1 ? " foto" : " fotos")
    property real lado: 140
    property int mirando: -1

    focus: true
    Keys.onEscapePressed: raiz.seleccion.cerrar()
    Component.onCompleted: raiz.forceActiveFocus()

    Rectangle {
        anchors.fill: parent
        color: Tema.fondo
    }

    Item {
        anchors.fill: parent
        enabled: raiz.mirando < 0

        BarraDeVista {
            id: cabeza

            width: parent.width
            titulo: "Fotos del iPhone"
            pie: raiz.cuantas
            onVuelta: raiz.seleccion.cerrar()

            Boton {
                activo: raiz.seleccion.visibles > 0
                texto: "Marcar todas"
                onPulsado: raiz.seleccion.marcarTodas()
            }

            Boton {
                activo: raiz.seleccion.marcados > 0
                texto: "Ninguna"
                onPulsado: raiz.seleccion.ninguna()
            }
        }

        BarraDeSeleccion {
            id: barra

            anchors.top: cabeza.bottom
            anchors.topMargin: 14
            x: 28
            width: parent.width - 56
            visible: raiz.seleccion.cuantos > 0
            seleccion: raiz.seleccion
            lado: raiz.lado
            onOtroLado: lado => raiz.lado = lado
        }

        RejillaDeFotos {
            id: rejilla

            anchors.top: barra.bottom
            anchors.topMargin: 10
            anchors.bottom: pie.top
            x: 24
            width: parent.width - 44
            seleccion: raiz.seleccion
            lado: raiz.lado
            focus: true
            onMirada: fila => raiz.mirando = fila
        }

        PieDeSeleccion {
            id: pie

            anchors.bottom: parent.bottom
            width: parent.width
            height: visible ? implicitHeight : 0
            visible: raiz.seleccion.marcados > 0
            seleccion: raiz.seleccion
            puede: !raiz.programa.modelo.tarea.enMarcha
        }

        Texto {
            anchors.centerIn: parent
            visible: raiz.seleccion.cargando && raiz.seleccion.cuantos === 0
            color: Tema.suave
            text: "Leyendo el carrete del iPhone…"
        }

        EstadoVacio {
            anchors.centerIn: parent
            width: parent.width - 64
            visible: !raiz.seleccion.cargando && raiz.seleccion.cuantos === 0
            simbolo: "photo.on.rectangle.angled"
            titulo: raiz.seleccion.noSeLee ? "No he podido leer el carrete" : "El carrete está vacío"
            texto: raiz.seleccion.noSeLee ? "Desbloquea el iPhone, mira el cable y vuelve a intentarlo." : ""
            textoDelBoton: raiz.seleccion.noSeLee ? "Intentar otra vez" : "Volver"
            onPulsado: raiz.seleccion.noSeLee ? raiz.seleccion.leer() : raiz.seleccion.cerrar()
        }

        Texto {
            anchors.centerIn: rejilla
            visible: raiz.seleccion.cuantos > 0 && raiz.seleccion.visibles === 0
            color: Tema.suave
            text: "No hay ninguna así"
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.mirando >= 0

        VistaFotoGrande {
            seleccion: raiz.seleccion
            fila: raiz.mirando
            onAlCerrar: {
                raiz.mirando = -1;
                rejilla.forceActiveFocus();
            }
        }
    }
}
