#pragma once

#include "photos/CursoDeBorrado.h"

#include <QDateTime>

/// Empties the phone's library of photos, and brings photos back out of a backup. Each takes the job first, returns at
/// once and ends it; main thread only. What deletes needs the owner's consent before it is called.
namespace vellora
{

class Tarea;

/// What a backup on the computer holds of the photos that are in the phone now, as it was looked up just now.
struct CopiaDelCarrete {
    bool lasTieneTodas = false; ///< finished, of this very phone, and each photo is in it, whole
    QString motivo;             ///< why not, as a sentence
    QString telefono;           ///< the phone's name when it was made
    QDateTime fecha;
    qint64 fotos = 0;        ///< that it holds of those in the phone, as a person counts them
    qint64 soloICloud = 0;   ///< that the phone lists and does not have: in no backup
    QString alQuitarLaLista; ///< what losing the phone's list means for those that stay; empty when there are none
};

/// What emptying the phone would do.
struct PlanDeVaciado {
    qint64 archivos = 0;
    qint64 bytes = 0;
    CopiaDelCarrete copia;
};
using AlPlanear = std::function<void(const PlanDeVaciado &)>;

// In all of these, `carpetaCopias` is the folder of the backups. The engine looks there again before it deletes, and
// deletes nothing that it does not find in a backup of that phone.

/// Changes nothing. No control calls it.
void planBorrarTodasLasFotos(Tarea &tarea, const QString &udid, const QString &carpetaCopias,
                             const AlPlanear &resultado);
/// The files of the roll alone. No control calls it.
void borrarTodasLasFotos(Tarea &tarea, const QString &udid, const QString &carpetaCopias);
/// Changes nothing: the library, and the backup that holds it.
void planBorrarBibliotecaDeFotos(Tarea &tarea, const QString &udid, const QString &carpetaCopias,
                                 const AlPlanear &resultado);
/// Photos, thumbnails, edits and the list of the Photos app.
void borrarBibliotecaDeFotos(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const Resumen &resumen);
/// What the owner is asked before, for a plan whose backup holds them all; and what they are told when it does not.
QString preguntaDeVaciar(const PlanDeVaciado &plan);
QString avisoDeNoVaciar(const QString &motivo);

/// The roll out of the backup of `udid` in the folder of backups, into `destino`.
void recuperarCarrete(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const QString &destino);

} // namespace vellora
