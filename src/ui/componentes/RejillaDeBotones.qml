import QtQuick

/// Large buttons side by side, all as tall as the tallest. Each takes `anchoDeCelda` and `altoDeCelda`.
Grid {
    id: raiz

    readonly property real anchoDeCelda: Math.floor((raiz.width - (raiz.columns - 1) * raiz.spacing) / raiz.columns)
    readonly property real altoDeCelda: {
        let alto = 0;
        for (let i = 0; i < raiz.children.length; ++i)
            alto = Math.max(alto, raiz.children[i].implicitHeight);
        return alto;
    }

    spacing: 12
}
