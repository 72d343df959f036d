#pragma once

#include <QString>

namespace vellora
{

class Tarea;

/// Makes one full backup of the phone into `destino`, where the tool makes a folder named by the UDID; progress and
/// ending are told through `tarea`. Returns at once. Without idevicebackup2 nothing happens. Main thread only.
///
/// The tool's word is checked: a backup counts as made when the tool ends well and `comprobarCopia` finds it whole. A
/// phone that leaves the cable ends the tool, which would otherwise wait for it for ever.
void copiaDeSeguridad(Tarea &tarea, const QString &udid, const QString &destino);

} // namespace vellora
