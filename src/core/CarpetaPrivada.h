#pragma once

#include "core/CarpetaDeDestino.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Folders that nobody but their owner looks into. Everything goes by descriptors: what stands under a name is looked
/// at before it is used, and no link is followed. Any thread; all of it blocks.
namespace vellora::CarpetaPrivada
{

/// Opens a folder that is this user's own, made when missing and closed to everybody else whatever the umask. The
/// folders before it are made too. Invalid when something else or a link has that name, when it is somebody else's, or
/// when the file system keeps no permissions.
Descriptor abrir(const QString &ruta);

/// The program's folder for what can be made again, "vellora" in the user's cache folder, or one inside it. Not made.
QString enLaCache(const QString &dentro = {});
/// "vellora" in the session's folder, which is gone with the session; where there is none, a folder of the cache. For
/// small files that one process hands to another. Empty when there is no private one.
QString deLaSesion();

/// Closes a folder of this user's that is there to everybody else, with `hastaElFondo` all folders under it too: never
/// through a link, never in another volume, never somebody else's.
void cerrar(const QString &ruta, bool hastaElFondo);

/// Removes a folder of this user's and all that is under it; never through a link, never into another volume. False
/// when some of it stays.
bool quitar(int padre, const QByteArray &nombre);
bool quitar(const QString &ruta);

} // namespace vellora::CarpetaPrivada
