#pragma once

#include "backups/CopiaEnCurso.h"

#include <QString>

#include <functional>

namespace vellora
{

class Tarea;

struct OpcionesDeCopia {
    CopiaEnCurso::Modo modo = CopiaEnCurso::Modo::Completa;
    bool aunqueFalteSitio = false; ///< the owner has been told that it may not fit beside the old one
    bool sinCifrar = false;        ///< the owner has said that it may be made without encryption
    /// Called when the job ended because the phone was about to make it without, unasked; may be empty.
    std::function<void()> alNoIrCifrada;
    /// Gets the question for the owner when the job ended because the new one may not fit; may be empty.
    std::function<void(const QString &)> alFaltarSitio;
};

/// Makes one backup of the phone into `destino`, where it comes to stand in a folder named by the UDID; progress and
/// ending are told through `tarea`. Returns at once. Without idevicebackup2 nothing happens. Main thread only.
///
/// The tool works in a folder of its own (`CopiaEnCurso`), so that the backup that was there stays as it is until the
/// new one is known to be good. The tool's word is checked: a backup counts as made when the tool ends well and
/// `comprobarCopia` finds nothing broken. A phone that leaves the cable ends the tool, which would otherwise wait for
/// it for ever.
void copiaDeSeguridad(Tarea &tarea, const QString &udid, const QString &destino, const OpcionesDeCopia &opciones = {});

} // namespace vellora
