#pragma once

#include "core/CarpetaDeDestino.h"
#include "engine/backup/CopiaAbierta.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace vellora::motor
{

/// What became of a run. `copiados` counts the files that stand in the destination, those that the backup holds cut
/// short (`cortados`) among them.
struct Cuenta {
    qint64 copiados = 0;
    qint64 yaEstaban = 0; ///< found there with the same bytes
    qint64 cortados = 0;
    qint64 fallidos = 0;
    qint64 bytes = 0;
    qint64 hechos() const { return copiados + yaEstaban + fallidos; }
};

/// What there is to take out before it is begun.
struct Plan {
    qint64 ficheros = 0;
    qint64 bytes = 0;
};

/// Takes files out of a backup, deciphered, on two threads. The list is read as it goes, so that memory grows with
/// neither the files nor their number.
class Sacador
{
public:
    /// Relative path under the destination; absent for a file that stays in the backup.
    using Sitio = std::function<std::optional<QByteArray>(const CopiaAbierta::Entrada &)>;
    /// Called from the calling thread, now and then.
    using Avance = std::function<void(const Cuenta &)>;
    /// A file that could not be taken out whole, and why. Called from the working threads, one at a time.
    using Queja = std::function<void(const QByteArray &ruta, const QString &motivo)>;

    /// The reason of a file that the list has and the backup has not.
    static constexpr auto falta = u"falta en la copia";

    enum class Colocado { Nuevo, YaEstaba, Negado };
    /// Gives a working file its name in the destination. Called from the working threads, several at a time, each with
    /// its own folder.
    using Colocar = std::function<Colocado(CarpetaDeDestino &, int numero, const QByteArray &relativa)>;
    /// Replaces a file of that name.
    static Colocado enSuSitio(CarpetaDeDestino &carpeta, int numero, const QByteArray &relativa);

    Sacador(const CopiaAbierta &laCopia, Sitio elSitio, Colocar comoSeColoca = enSuSitio)
        : copia(laCopia), sitio(std::move(elSitio)), colocar(std::move(comoSeColoca))
    {
    }

    Plan planear() const;
    /// Absent motive: the run went to the end of the list, or to where the list can be read. Otherwise the sentence
    /// that tells why it stopped; what had been taken out stays, whole.
    std::optional<QString> sacar(const QString &destino, const Avance &avance, const Queja &queja,
                                 Cuenta &cuenta) const;

private:
    const CopiaAbierta &copia;
    Sitio sitio;
    Colocar colocar;
};

} // namespace vellora::motor
