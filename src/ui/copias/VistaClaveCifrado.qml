import QtQuick
import Vellora.Componentes
import Vellora.Sesion

/// The sheet that asks for the password of the backups, before the first one.
Hoja {
    id: raiz

    required property Copias copias

    signal resuelta(aceptada: bool)

    function acepta() {
        if (raiz.copias.claveVale)
            raiz.resuelta(true);
    }

    nombre: "Copia cifrada"
    ancho: 540
    onResuelta: aceptada => raiz.copias.resolverClave(aceptada)
    onCerrada: raiz.resuelta(false)

    Column {
        width: parent.width
        spacing: 14

        Texto {
            width: parent.width - 32
            tipo: Texto.Titulo
            font.pixelSize: 20
            text: "Copia cifrada"
            Accessible.role: Accessible.Heading
        }

        Texto {
            width: parent.width
            wrapMode: Text.Wrap
            text: "Para «" + raiz.copias.claveDeQuien + "»"
        }

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.Wrap
            text: "Sin cifrar, el iPhone deja fuera de la copia tus contraseñas del Llavero, los datos de Salud y parte de WhatsApp. Con cifrado se copia todo."
        }

        CampoDeTexto {
            id: clave

            width: parent.width
            focus: true
            rotulo: "Contraseña (mínimo 6 caracteres)"
            Component.onCompleted: forceActiveFocus()
            onTextoChanged: raiz.copias.clave = texto
            onAceptado: repetida.forceActiveFocus()
        }

        CampoDeTexto {
            id: repetida

            width: parent.width
            rotulo: "Repítela"
            onTextoChanged: raiz.copias.claveRepetida = texto
            onAceptado: raiz.acepta()
        }

        Tira {
            width: parent.width
            texto: "Si pierdes esta contraseña, las copias no se podrán recuperar NUNCA. Se guarda en el Llavero de este Mac."
        }

        Texto {
            width: parent.width
            color: Tema.suave
            wrapMode: Text.Wrap
            text: "El iPhone te pedirá confirmarlo en su pantalla."
        }

        Row {
            anchors.right: parent.right
            spacing: 8

            Boton {
                texto: "Cancelar"
                onPulsado: raiz.resuelta(false)
            }

            Boton {
                clase: Boton.Principal
                activo: raiz.copias.claveVale
                texto: "Activar y hacer la copia"
                onPulsado: raiz.acepta()
            }
        }
    }
}
