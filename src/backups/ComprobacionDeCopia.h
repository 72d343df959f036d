#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace vellora
{

/// Whether what the tool left in a backup folder can be trusted. The tool has ended with "Backup Successful." and
/// status 0 on a full disk, so its word is not enough.
struct ComprobacionDeCopia {
    enum class Veredicto {
        Entera,       ///< finished, and every file that it names was looked at
        SinComprobar, ///< finished by its own word; what it holds could not be looked into
        Rota          ///< not finished, or damaged
    };
    Veredicto veredicto = Veredicto::Rota;
    bool discoLleno = false; ///< broken, and the volume has no room left
    QStringList detalles;    ///< for the log: what is wrong, or what is worth knowing in a whole one

    bool entera() const { return veredicto == Veredicto::Entera; }
    bool rota() const { return veredicto == Veredicto::Rota; }
};

/// Looks at "Status.plist" (its SnapshotState must be "finished"), "Manifest.plist" and "Manifest.db": it must be
/// readable to its last row; on a full disk no file may be shorter than it says. The list of an encrypted backup cannot
/// be read here; its size is looked at only, and the verdict is `SinComprobar`. Blocks for about a second per 50,000 files: background threads only.
ComprobacionDeCopia comprobarCopia(const QString &carpeta);

} // namespace vellora
