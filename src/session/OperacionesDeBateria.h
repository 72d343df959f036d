#pragma once

#include "session/DatosBateria.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>
#include <utility>

namespace vellora
{

class Tarea;

struct SaludBateria {
    std::optional<qint64> ciclos;
    std::optional<qint64> salud;  ///< percent
    std::optional<double> grados; ///< Celsius
};

/// Day (dd/MM/yyyy) and percent, the oldest first.
using HistorialBateria = QList<std::pair<QString, qint64>>;

/// Silent: no job, no log. Blocks up to 40 s: background threads only.
SaludBateria saludBateria(const QString &udid);
/// The same of what the engine wrote.
SaludBateria saludBateriaEn(const QString &salida);

/// Looks at the battery as the job. `resultado` is called once, with nothing when the phone did not tell.
void mirarBateria(Tarea &tarea, const QString &udid, const QString &fichero,
                  const std::function<void(const std::optional<DatosBateria> &, const HistorialBateria &)> &resultado);

/// Has today's health written down in `fichero`, as the job; `resumen` gets what can be said of it.
void apuntarBateria(Tarea &tarea, const QString &udid, const QString &fichero,
                    const std::function<void(const QString &)> &resumen);

/// What the phone says of its networks, as silently; absent when it did not tell. Blocks up to 40 s.
std::optional<InfoRed> redDe(const QString &udid);
/// The same of what the engine wrote.
std::optional<InfoRed> redEn(const QString &salida);

/// The measurements that the engine has kept; empty when they cannot be read.
HistorialBateria leerHistorialBateria(const QString &fichero);

} // namespace vellora
