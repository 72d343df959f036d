#pragma once

#include "core/CarpetaDeDestino.h"

#include <optional>

namespace vellora
{

/// Keeps a folder for one writer: no other program, and no other computer that shares the folder, takes it meanwhile.
/// The lock is the system's own (flock) on `.vellora-cerrojo` in the folder, and ends with the process that holds it,
/// however that ends; on NFS and SMB the server keeps it. The file itself stays, empty.
class CerrojoDeCarpeta
{
public:
    enum class Estado {
        Tomado,
        Ocupado,     ///< somebody else writes there
        SinCerrojos, ///< the disk or its server knows no locks: nobody can be kept out
        Negado       ///< nothing can be written there
    };
    /// Makes the folder when it is missing, for the owner alone. Does not wait. Any thread.
    static CerrojoDeCarpeta tomar(const QString &carpeta);

    Estado estado() const { return estado_; }
    /// Why the folder cannot be used now, for the owner; absent with `Tomado` and with `SinCerrojos`.
    std::optional<QString> impedimento() const;
    /// What to know while using it; absent with all but `SinCerrojos`.
    std::optional<QString> aviso() const;

private:
    CerrojoDeCarpeta(Estado elEstado, Descriptor elFichero) : estado_(elEstado), fichero(std::move(elFichero)) {}

    Estado estado_;
    Descriptor fichero;
};

} // namespace vellora
