#pragma once

#include <QString>

#include <functional>

/// Empties the phone's library of photos, and brings photos back out of a backup. Each takes the job first, returns at
/// once and ends it; main thread only. What deletes needs the owner's consent before it is called.
namespace vellora
{

class Tarea;

/// A sentence for the owner at the end.
using Resumen = std::function<void(const QString &)>;

/// Changes nothing; files and bytes of the roll. No control calls it.
void planBorrarTodasLasFotos(Tarea &tarea, const QString &udid,
                             const std::function<void(qint64 archivos, qint64 bytes)> &resultado);
/// The files of the roll alone. No control calls it.
void borrarTodasLasFotos(Tarea &tarea, const QString &udid);
/// Photos, thumbnails, edits and the list of the Photos app.
void borrarBibliotecaDeFotos(Tarea &tarea, const QString &udid, const Resumen &resumen);

/// The roll out of the backup of `udid` in the folder of backups, into `destino`.
void recuperarCarrete(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const QString &destino);

} // namespace vellora
