import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// What stands above the passwords: the warning, how to find one, and how to keep them all.
Column {
    id: raiz

    required property Contrasenas contrasenas

    signal guardarTodas

    topPadding: 24
    bottomPadding: 12
    spacing: 14

    Texto {
        tipo: Texto.Titulo
        text: "Contraseñas"
        Accessible.role: Accessible.Heading
    }

    Tira {
        width: raiz.width
        texto: "Ojo: aquí se ven tus contraseñas de verdad. No lo enseñes por ahí."
    }

    Texto {
        width: raiz.width
        color: Tema.suave
        wrapMode: Text.Wrap
        text: "Añadir, cambiar o borrar contraseñas EN EL IPHONE no se puede por cable: Apple no lo permite. Lo que sí funciona: guardarlas en el Llavero de este Mac con el botón de cada fila, y si tienes el Llavero de iCloud encendido, aparecen solas en el iPhone."
    }

    Flow {
        width: raiz.width
        spacing: 10

        Opciones {
            nombre: "Qué contraseñas se ven"
            valor: raiz.contrasenas.filtro
            opciones: [
                {
                    valor: "",
                    texto: "Todas"
                },
                {
                    valor: "wifi",
                    texto: "Redes wifi"
                },
                {
                    valor: "internet",
                    texto: "Webs"
                },
                {
                    valor: "app",
                    texto: "Apps"
                }
            ]
            onElegida: valor => raiz.contrasenas.filtro = valor
        }

        CampoDeBusqueda {
            width: Math.min(280, raiz.width)
            alto: 32
            pista: "Buscar"
            texto: raiz.contrasenas.busqueda
            onTextoChanged: if (texto !== raiz.contrasenas.busqueda) raiz.contrasenas.busqueda = texto
        }

        Boton {
            texto: "Guardar todas en un archivo"
            ayuda: "Este archivo lleva tus contraseñas EN CLARO. Guárdalo en sitio seguro."
            onPulsado: raiz.guardarTodas()
        }
    }

    Texto {
        width: raiz.width
        visible: text !== ""
        color: Tema.acentoTexto
        font.weight: Font.Medium
        wrapMode: Text.Wrap
        text: raiz.contrasenas.mensaje
    }

    Texto {
        width: raiz.width
        visible: raiz.contrasenas.cerradas > 0
        tipo: Texto.Menor
        wrapMode: Text.Wrap
        text: raiz.contrasenas.cerradas === 1 ? "Hay una más que el iPhone no deja salir de él." : "Hay " + raiz.contrasenas.cerradas + " más que el iPhone no deja salir de él."
    }
}
