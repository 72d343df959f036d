#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace vellora
{

class Ejecutor;

/// Whether what the tool left in a backup folder can be trusted. The tool has ended with "Backup Successful." and
/// status 0 on a full disk, so its word is not enough.
struct ComprobacionDeCopia {
    enum class Veredicto {
        Entera,       ///< finished, and every file that it names was looked at
        SinComprobar, ///< finished by its own word; what it holds could not be looked into
        Rota          ///< not finished, or damaged
    };
    Veredicto veredicto = Veredicto::SinComprobar;
    bool cifrada = false;
    bool discoLleno = false; ///< broken, and the volume has no room left
    QStringList detalles;    ///< for the log: what is wrong, or what is worth knowing in a whole one

    bool entera() const { return veredicto == Veredicto::Entera; }
    bool rota() const { return veredicto == Veredicto::Rota; }
};

/// Has the engine look at a backup, encrypted or not: finished by its own word, its list readable to the last row, and
/// each file of the list there, long enough and, where it is encrypted, ending as it must. The password comes from the
/// store of secrets; without it, or without an engine, the verdict is `SinComprobar`, and `detalles` says why.
/// `udid`: whose password. `rehusados`: files that the phone itself refused to send, which may be absent.
/// `alAvanzar`: files looked at, and in all. `alAcabar` is called once, on the main thread, also when `motor` was
/// cancelled. Returns at once. About a second per 30,000 files in the page cache. Main thread.
void comprobarCopia(Ejecutor &motor, const QString &udid, const QString &carpeta, qsizetype rehusados,
                    const std::function<void(qint64 hechos, qint64 deTotal)> &alAvanzar,
                    const std::function<void(const ComprobacionDeCopia &)> &alAcabar);
/// The same, waiting for it. Background threads only.
ComprobacionDeCopia comprobarCopia(const QString &udid, const QString &carpeta);

} // namespace vellora
