#pragma once

#include "engine/roll/BorradoProbado.h"

namespace vellora::motor
{

/// What a deletion from the roll set out with.
struct Borrado {
    qint64 ficheros = 0;     ///< that were to go
    qint64 seQuedan = 0;     ///< files that were left aside from the beginning
    bool todoMirado = false; ///< the phone showed the whole roll before; what it did not show is unknown, not absent
    bool conLista = false;   ///< the list of the Photos app goes with them
    std::optional<QString> parada; ///< why it stopped on its own account
};

/// Ends a deletion: looks at what is left, drops the list of the Photos app where that may be, and tells of both. The
/// list goes only after a photo has gone, and stays as long as some folder of the phone could not be looked into.
/// Notices: "fin" (see `liberar`), or, of a deletion that did not come to its end, "cortado" borrados quedan (files
/// that were to go) liberados lista_borrada. The exit status.
int acabarBorrado(const Borrado &borrado, const CuentaDeBorrado &cuenta, Conexiones &conexiones, Avisos &avisar);

/// The second of these, for deletions that look at what is left in their own way.
int contarCorte(const Borrado &borrado, const CuentaDeBorrado &cuenta, Conexiones &conexiones, Avisos &avisar);

} // namespace vellora::motor
