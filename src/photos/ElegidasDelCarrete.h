#pragma once

#include "core/CarpetaDeTrabajo.h"
#include "photos/BorrarFotos.h"
#include "photos/FotoDelCarrete.h"

#include <memory>

/// The roll file by file: listing it, and copying or deleting chosen ones. Each takes the job first, returns at once
/// and ends it; main thread only. What deletes needs the owner's consent before it is called.
namespace vellora
{

struct CarreteListado {
    QList<FotoDelCarrete> fotos;
    QString alQuitarLaLista; ///< what losing the phone's list means for photos that stay; empty when there are none
};
/// `resultado` gets the roll once it has been read; it is not called when it could not be, nor when the phone showed no
/// photo and refused to show some folder. Folders that it kept back beside what it showed are told in the log.
void listarCarrete(Tarea &tarea, const QString &udid, const QString &carpetaLocal,
                   const std::function<void(const CarreteListado &)> &resultado);
void copiarElegidas(Tarea &tarea, const QString &udid, const QStringList &rutas, const QString &destino);
/// What the owner is asked before: so many photos of so many bytes, some of them not copied. `alQuitarLaLista` as
/// above.
QString preguntaDeBorrarElegidas(qint64 cuantos, qint64 peso, qint64 sinCopiar, const QString &alQuitarLaLista = {});
/// What the owner agreed to delete, with what was said of it.
struct ElegidasParaBorrar {
    QStringList rutas;
    /// Of those: what the owner was told to be in no folder of the computer. All the rest was said to be copied, and
    /// goes only after its copy has been proved at that moment.
    QStringList sinCopiar;
    QString carpeta; ///< where the copies of the rest are
};
/// With the list of the Photos app, which is made anew when the phone starts.
void borrarElegidasDeVerdad(Tarea &tarea, const QString &udid, const ElegidasParaBorrar &elegidas,
                            const Resumen &resumen);
/// The files alone. No control calls it.
void borrarElegidas(Tarea &tarea, const QString &udid, const ElegidasParaBorrar &elegidas, const Resumen &resumen);

/// Paths of the phone, a line each, in "vellora-elegidas.txt": in a private folder of its own, which goes with it, so
/// that no other program's list is taken for it.
struct ListaDeRutas {
    CarpetaDeTrabajo carpeta;
    QString fichero;
};
/// Null when it cannot be written.
std::shared_ptr<const ListaDeRutas> apuntarRutas(const QStringList &rutas);

} // namespace vellora
