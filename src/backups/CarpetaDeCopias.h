#pragma once

#include "core/CarpetaDeDestino.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What is done to a folder of backups as a whole. Everything goes by descriptors and follows no link inside it. All of
/// it blocks: background threads only.
namespace vellora::CarpetaDeCopias
{

/// Opens the folder and locks it for this process; invalid when another one, or another descriptor of this one, holds
/// it for longer than `segundos`. A file system that knows no locks gives the folder unlocked.
Descriptor tomar(const QString &copias, int segundos);

/// Opens a folder inside another; invalid when it is missing, a link or no folder.
Descriptor dentro(int carpeta, const QByteArray &nombre);

/// Makes the folder `nueva` in `padre` a twin of a backup: each file of its subfolders becomes a second name of the
/// same bytes, the files at its top (the list, its logs and the property lists, which are written in place) are copied.
/// `menos`: a name at the top that is left out. False when any of it could not be made.
bool hacerGemela(int vieja, int padre, const QByteArray &nueva, const QByteArray &menos);

/// Bytes on the disk of all folders together; what several names share is counted once.
qint64 bytesEnDisco(const QStringList &carpetas);
/// Bytes that the removal of this folder would free: what has another name outside it stays.
qint64 bytesSoloDe(const QString &carpeta);

} // namespace vellora::CarpetaDeCopias
