import QtQuick
import Vellora.Componentes

/// A paragraph of the help.
Texto {
    width: parent ? parent.width : 0
    wrapMode: Text.Wrap
}
