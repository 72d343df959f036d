#pragma once

#include <QString>

namespace vellora
{

class Tarea;

/// Puts the backup `origen`, the folder of the UDID that it was made of under `carpetaCopias`, on the phone `udid`:
/// what is there is replaced. The folder of backups is locked meanwhile. The caller has asked the owner. Progress and
/// ending are told through `tarea`; returns at once. Without idevicebackup2 nothing happens. Main thread.
void restaurarCopia(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const QString &origen);

} // namespace vellora
