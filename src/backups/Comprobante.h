#pragma once

#include "backups/ComprobacionDeCopia.h"

#include <QString>

#include <optional>

/// What is noted in a backup folder once it was checked: a small hidden file, ".vellora-comprobada", a JSON object with
/// the keys udid, veredicto ("entera", "sin comprobar"), lista and descripcion (bytes and seconds since 1970 of
/// "Manifest.db" and "Manifest.plist") and estado (SHA-256 of "Status.plist", which every run of a backup writes anew).
/// It holds for that very state: whatever changes the backup afterwards makes the note void. The phone and other tools
/// pass it by. Any thread; few small reads.
namespace vellora::Comprobante
{

const QString &fichero();

/// The verdict that is noted in the backup folder; absent without a note, or with one of another state or another phone
/// than the one whose identifier is the folder's name.
std::optional<ComprobacionDeCopia::Veredicto> leer(const QString &copia);

/// Notes a verdict other than `Rota`; replaces the former note. False when it could not be written.
bool escribir(const QString &copia, ComprobacionDeCopia::Veredicto veredicto);

/// Checks the backup and notes what came of it; a backup whose own description names another phone is broken.
/// Background threads only.
ComprobacionDeCopia comprobarYApuntar(const QString &copia);

} // namespace vellora::Comprobante
