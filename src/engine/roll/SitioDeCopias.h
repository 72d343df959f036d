#pragma once

#include "core/CarpetaDeDestino.h"
#include "engine/roll/Carrete.h"

#include <optional>

namespace vellora::motor
{

/// The mount that an open file or folder belongs to; two views of one file system differ in it. Absent when the system
/// does not tell.
std::optional<quint64> montajeDe(int descriptor);

/// The folder of photos as a place that outlives the phone's own files. A phone can be seen as a folder too (gvfs,
/// ifuse, or whatever comes next): what stands there is no copy of it.
class SitioDeCopias
{
public:
    /// Fails with a sentence when the folder is not there, stands in memory, on a file system that could show the phone
    /// itself, or is found to be one of the phone's: a file made in it for a moment must not appear in any folder of
    /// the phone that holds photos of the roll, nor above one.
    static Resultado<SitioDeCopias> abrir(const QString &carpeta, Conexiones &conexiones, const QStringList &rutas);

    /// Whether an open file is in the folder itself and not in something else that is mounted below it.
    bool esSuyo(int descriptor) const { return montajeDe(descriptor) == montaje; }

private:
    explicit SitioDeCopias(quint64 suMontaje) : montaje(suMontaje) {}

    quint64 montaje;
};

} // namespace vellora::motor
