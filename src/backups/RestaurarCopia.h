#pragma once

#include <QString>

namespace vellora
{

class Tarea;

/// Returns the backup of that phone, the folder of its UDID under `carpetaCopias`, to it: what is on the phone is
/// replaced. The caller has asked the owner. Progress and ending are told through `tarea`; returns at once. Without
/// idevicebackup2 nothing happens. Main thread.
void restaurarCopia(Tarea &tarea, const QString &udid, const QString &carpetaCopias);

} // namespace vellora
