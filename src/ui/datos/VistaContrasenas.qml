pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// The phone's saved passwords, in the four states that reading them has.
FocusScope {
    id: raiz

    required property Programa programa
    readonly property Contrasenas contrasenas: raiz.programa.contrasenas
    readonly property bool libre: !raiz.programa.modelo.tarea.enMarcha

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.contrasenas.estado === "empezando"

        PortadaDeContrasenas {
            simbolo: "key.fill"
            titulo: "Tus contraseñas guardadas"
            texto: "El iPhone guarda en el Llavero las contraseñas de tus redes wifi, de las webs donde entras y de algunas apps. Se pueden sacar de la copia de seguridad, pero solo si la copia va cifrada."
            textoDelBoton: "Buscar mis contraseñas"
            puede: raiz.libre
            onPulsado: raiz.programa.buscarContrasenas()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.contrasenas.estado === "sincifrar"

        PortadaDeContrasenas {
            simbolo: "lock.fill"
            titulo: "Tu copia de seguridad no está cifrada, y sin cifrar el iPhone no deja leer las contraseñas."
            subtitulo: "Suena al revés, pero es así"
            texto: "En una copia sin cifrar, el Llavero viene dentro pero protegido por el chip del propio iPhone: no hay forma de abrirlo. Si cifras la copia con una contraseña tuya, el iPhone vuelve a cifrar el Llavero con ESA contraseña, y entonces sí se puede leer.\n\nEs lo mismo que pasa con los datos de Salud y el historial de llamadas."
            textoDelBoton: "Hacer una copia cifrada ahora"
            pie: "Te pediré una contraseña y la guardaré en el Llavero de este Mac. Después vuelve aquí."
            puede: raiz.libre && raiz.programa.modelo.hayIPhone
            onPulsado: raiz.programa.copias.pedirCopia()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.contrasenas.estado === "fallo"

        PortadaDeContrasenas {
            simbolo: "exclamationmark.triangle.fill"
            titulo: raiz.contrasenas.fallo
            textoDelBoton: "Volver a intentarlo"
            puede: raiz.libre
            onPulsado: raiz.programa.buscarContrasenas()
        }
    }

    Cargador {
        anchors.fill: parent
        focus: activo
        activo: raiz.contrasenas.estado === "listas"

        ListaDeContrasenas {
            contrasenas: raiz.contrasenas
        }
    }
}
