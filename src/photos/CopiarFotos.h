#pragma once

#include <QString>

/// Copies of the camera roll. Each takes the job first, returns at once and ends it; main thread only.
namespace vellora
{

class Tarea;

/// Brings into `destino` what of the roll of that phone is not there yet.
void copiarFotosRapido(Tarea &tarea, const QString &udid, const QString &destino);

/// The former way, a folder of the roll after the other with pymobiledevice3, which compares nothing. No control
/// starts it.
void copiarFotos(Tarea &tarea, const QString &udid, const QString &destino);

} // namespace vellora
