#pragma once

#include "photos/FotoDelCarrete.h"

namespace vellora
{

/// What is on show of the roll.
struct VistaDelCarrete {
    QString filtro;   ///< "", "fotos", "videos", "vivas", "retocadas", "copiadas", "sincopiar" or "papelera"
    QString orden;    ///< "nombre", "peso" or "tipo"
    QString busqueda; ///< part of a name, capitals or not
};

/// Places of the photos on show, in their order. The roll comes by name. Any thread.
QList<int> elegirDelCarrete(const QList<ElementoGaleria> &elementos, const VistaDelCarrete &vista);

} // namespace vellora
