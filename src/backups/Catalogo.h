#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

/// What the file system alone tells of the backups on the computer. Attribute reads and one folder listing at the most,
/// so that a view may ask at each redraw. Every failure is silent. Any thread.
///
/// `carpeta` is a phone's "Copias de seguridad", with a folder named by UDID for each phone in it.
namespace vellora::Catalogo
{

enum class Clase {
    NoHay,
    Inacabada,    ///< says itself that it is not finished, or has no list
    SinComprobar, ///< nothing says that it is not finished, and nobody looked into it in this state
    Entera        ///< finished and checked, of the phone whose identifier is its folder's name
};
struct Estado {
    Clase clase = Clase::NoHay;
    std::optional<QDateTime> fecha; ///< absent when there is none
};
/// What may be believed of one backup folder.
Estado estadoDe(const QString &copia);

/// Modification date of one backup folder: of its "Manifest.db", else of its "Info.plist", else absent.
std::optional<QDateTime> fechaDe(const QString &copia);

/// Date of the backup of `udid`; without a UDID, the latest date of any entry of the folder. Only a backup that is
/// whole has one: finished, checked, and of the phone whose name it stands under.
std::optional<QDateTime> fechaDeLaUltimaCopia(const QString &carpeta, const std::optional<QString> &udid);

/// Whole days from then to `ahora`, absent without a date.
std::optional<qint64> diasDesde(const std::optional<QDateTime> &fecha, const QDateTime &ahora);

/// First name in the listing's own order that has 21 characters or more and does not begin with ".".
std::optional<QString> udidDeLaCopia(const QString &carpeta);

/// The warning for the selected phone: none yet, one of 14 days or more, or one that does not count; absent otherwise.
std::optional<QString> aviso(std::optional<qint64> dias);
std::optional<QString> aviso(const Estado &estado, const QDateTime &ahora);
/// "hoy", "hace 1 día", "hace 21 días".
QString haceDias(qint64 dias);

} // namespace vellora::Catalogo
