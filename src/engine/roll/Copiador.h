#pragma once

#include "engine/roll/Copiadas.h"

#include <functional>
#include <optional>
#include <vector>

namespace vellora::motor
{

/// What became of a copy so far.
struct CuentaDeCopia {
    qint64 copiados = 0;
    qint64 saltados = 0;
    qint64 fallos = 0;
    qint64 bytes = 0; ///< received from the phone
    qint64 hechos() const { return copiados + saltados + fallos; }
};

/// Brings files of the roll into a folder, those that are not there yet, over all connections. Each is written under a
/// working name, told by its phone to be whole and unchanged, put on the disk, dated as in the phone, and only then
/// named; never over another file: one that bears its name gives way to nothing, and the new one becomes "… (2)". What
/// was noted and is untouched is there already; of anything else the content decides.
class Copiador
{
public:
    /// Both are called from any thread, one at a time. `fichero` is what is being copied.
    using Avance = std::function<void(const CuentaDeCopia &cuenta, const QString &fichero)>;
    using Queja = std::function<void(const QString &fichero, const QString &motivo)>;

    Copiador(Conexiones &lasConexiones, Copiadas &lasCopiadas, QString elDestino)
        : conexiones(lasConexiones), copiadas(lasCopiadas), destino(std::move(elDestino))
    {
    }

    /// Absent: it came to the end of the list, or the engine was asked to end. Otherwise the sentence that tells why it
    /// stopped. What had been brought by then stays, whole.
    std::optional<QString> copiar(const std::vector<FicheroDelCarrete> &ficheros, const Avance &avance,
                                  const Queja &queja, CuentaDeCopia &cuenta);

private:
    Conexiones &conexiones;
    Copiadas &copiadas;
    QString destino;
};

} // namespace vellora::motor
