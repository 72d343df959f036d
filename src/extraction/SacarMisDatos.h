#pragma once

#include <QString>

namespace vellora
{

class Tarea;

/// Turns the backup of that phone under `carpetaCopias` into plain files in `destino`: the engine unpacks what is
/// needed into a folder of the temporary ones, the extractors read it. Returns at once; progress and ending are told
/// through `tarea`. Main thread.
void sacarMisDatos(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const QString &destino);

} // namespace vellora
