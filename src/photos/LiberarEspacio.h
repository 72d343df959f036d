#pragma once

#include <QString>

#include <functional>

/// Takes off the phone what is safe on the computer. Each takes the job first, returns at once and ends it; main thread
/// only.
namespace vellora
{

class Tarea;

/// What a freeing would do. Files and bytes.
struct PlanLiberar {
    qint64 archivos = 0;
    qint64 sinCopiar = 0; ///< those that stay because they are not copied
    qint64 bytes = 0;
    QString alQuitarLaLista; ///< what losing the phone's list means for photos that stay; empty when there are none
};

/// Changes nothing. `resultado` gets the numbers; it is not called when they cannot be had.
void planDeLiberacion(Tarea &tarea, const QString &udid, const QString &carpetaFotos,
                      const std::function<void(const PlanLiberar &)> &resultado);
/// Deletes. The owner has agreed.
void liberarEspacio(Tarea &tarea, const QString &udid, const QString &carpetaFotos);

} // namespace vellora
