#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// Where the command-line tools are. Each value is found once, on first use: a tool that is installed while the program
/// runs is seen at the next start. Free to read from any thread.
namespace vellora::Herramientas
{

/// Resources folder of the program's own folder (Contents/Resources beside Contents/MacOS), or absent when the program
/// does not run from such a folder.
std::optional<QString> carpetaDeRecursos();

/// The folders to search, in order: packed with the program, then the system's. Also the PATH of every long job.
QStringList rutasDeBusqueda(const std::optional<QString> &recursos, const QString &casa);
const QStringList &rutasBusqueda();

/// First executable file of that name in `rutas`, or absent. Nothing is run; the owner's own PATH plays no part.
std::optional<QString> localizar(const QString &nombre, const QStringList &rutas = rutasBusqueda());

const std::optional<QString> &ideviceID();
const std::optional<QString> &ideviceInfo();
const std::optional<QString> &idevicebackup2();
const std::optional<QString> &pymobiledevice();

/// What the owner must be asked to install: "libimobiledevice" (once for its three tools), "pymobiledevice3".
QStringList queFalta();
bool todoListo();

} // namespace vellora::Herramientas
