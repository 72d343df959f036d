pragma ComponentBehavior: Bound
import QtQuick
import Vellora.Componentes
import Vellora.Datos
import Vellora.Sesion

/// Somebody's card: how to call or write, and what can be done in the computer's address book.
Desplazable {
    id: raiz

    required property Contactos contactos
    readonly property contacto ficha: raiz.contactos.ficha
    property bool exportando: false

    signal exporta(formato: int)

    contentHeight: columna.y + columna.implicitHeight + 28

    Column {
        id: columna

        x: 28
        y: 24
        width: Math.min(raiz.width - 56, 760)
        spacing: 16

        Row {
            width: parent.width
            spacing: 18

            Retrato {
                id: retrato

                width: 84
                height: 84
                nombre: raiz.ficha.comoSeLlama
                foto: raiz.contactos.fotoElegida
            }

            Column {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - retrato.width - 18
                spacing: 2

                Texto {
                    width: parent.width
                    tipo: Texto.Titulo
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    elide: Text.ElideRight
                    text: raiz.ficha.comoSeLlama
                    Accessible.role: Accessible.Heading
                }

                Texto {
                    width: parent.width
                    visible: text !== "" && text !== raiz.ficha.comoSeLlama
                    color: Tema.suave
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    text: raiz.ficha.empresa
                }
            }
        }

        Tira {
            width: parent.width
            clase: Tira.Informa
            texto: raiz.contactos.aviso
        }

        Repeater {
            model: raiz.ficha.telefonos

            FilaDeContactar {
                width: columna.width
                simbolo: "phone.fill"
                modos: [["llamar", "Llamar"], ["mensaje", "Mensaje"], ["whatsapp", "WhatsApp"], ["faceTime", "FaceTime"]]
                onPide: (como, quien) => Contactos.contactar(como, quien)
            }
        }

        Repeater {
            model: raiz.ficha.correos

            FilaDeContactar {
                width: columna.width
                simbolo: "envelope"
                modos: [["correo", "Correo"]]
                onPide: (como, quien) => Contactos.contactar(como, quien)
            }
        }

        Texto {
            width: parent.width
            visible: text !== ""
            color: Tema.suave
            wrapMode: Text.Wrap
            text: raiz.ficha.nota
        }

        Flow {
            width: parent.width
            spacing: 10

            Boton {
                texto: "Editar"
                onPulsado: raiz.contactos.abrirHoja(Contactos.Editar)
            }

            Boton {
                clase: Boton.Peligroso
                texto: "Borrar"
                onPulsado: raiz.contactos.abrirHoja(Contactos.Borrar)
            }

            Boton {
                texto: "Al Mac"
                ayuda: "Guardarlo en la agenda de este Mac"
                onPulsado: raiz.contactos.copiarAlMac()
            }

            Boton {
                texto: "Exportar"
                onPulsado: raiz.exportando = !raiz.exportando
            }

            Boton {
                visible: raiz.exportando
                clase: Boton.Callado
                texto: "Guardar todos (vCard)"
                onPulsado: raiz.exporta(Contactos.VCard)
            }

            Boton {
                visible: raiz.exportando
                clase: Boton.Callado
                texto: "Guardar todos (hoja)"
                onPulsado: raiz.exporta(Contactos.Hoja)
            }
        }

        Texto {
            width: parent.width
            tipo: Texto.Menor
            wrapMode: Text.Wrap
            lineHeight: 1.3
            text: "Editar y borrar se hacen en la agenda de este Mac. Por cable no se puede cambiar nada en el iPhone: con los Contactos de iCloud encendidos en los dos sitios, el cambio le llega en un rato."
        }
    }
}
