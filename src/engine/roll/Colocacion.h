#pragma once

#include "core/CarpetaDeDestino.h"

#include <QByteArrayList>

#include <sys/stat.h>

namespace vellora::motor
{

/// Where a working file has come to stand.
struct Colocado {
    enum class Fin {
        Suyo,     ///< under a name of its own
        YaEstaba, ///< the same bytes stand there already; the working file is gone
        Negado    ///< the folder takes it under no name
    };
    Fin fin = Fin::Negado;
    QByteArray relativa;   ///< empty with `Negado`
    struct stat como = {}; ///< of the file that stands there; with `Negado` of no meaning
};

/// Gives the working file of that number the name `relativa`, never over another file whatever its size or date: one
/// that bears the name and other bytes keeps it, and the new one becomes "… (2)". Only the content of a file tells that
/// it is the same; `candidatas` are files elsewhere in the folder that may be. A name that the folder's disk does not
/// take becomes a plain one.
Colocado colocarPorContenido(CarpetaDeDestino &carpeta, int numero, const QByteArray &relativa,
                             const QByteArrayList &candidatas = {});

} // namespace vellora::motor
