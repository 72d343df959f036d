pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// The passwords, each hidden until it is asked for.
FocusScope {
    id: raiz

    required property Contrasenas contrasenas

    GuardarComo {
        id: guardar

        titulo: "Este archivo lleva tus contraseñas EN CLARO. Guárdalo en sitio seguro."
        filtro: "Hoja de cálculo (*.csv)"
        extension: "csv"
        onElegido: fichero => raiz.contrasenas.exportar(fichero)
    }

    Lista {
        id: lista

        anchors.fill: parent
        topMargin: cabeza.height
        bottomMargin: 24
        spacing: 6
        nombre: "Contraseñas"
        model: raiz.contrasenas

        delegate: FilaDeClave {
            x: 28
            width: lista.width - 56
            onVer: si => raiz.contrasenas.ver(index, si)
            onCopiar: raiz.contrasenas.copiar(index)
            onGuardar: raiz.contrasenas.guardarEnElLlavero(index)
        }
    }

    // It scrolls along with the passwords, above the first.
    CabezaDeContrasenas {
        id: cabeza

        parent: lista.contentItem
        x: 28
        y: lista.originY - height
        width: lista.width - 56
        contrasenas: raiz.contrasenas
        // Who is at the top stays there when it grows.
        onHeightChanged: if (lista.contentY <= lista.originY) lista.contentY = lista.originY - height
        onGuardarTodas: guardar.abrir("Mis contraseñas del iPhone.csv")
    }
}
