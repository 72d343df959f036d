import QtQuick
import Vellora.Componentes

/// The ground of a card.
Rectangle {
    radius: 12
    color: Tema.tarjeta
    border.width: 1
    border.color: Tema.borde
}
