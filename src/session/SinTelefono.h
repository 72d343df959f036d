#pragma once

#include <QString>
#include <QStringList>

/// Whose things are shown while no phone is connected: those of the phone that was here last, of the only one that has
/// any, or of the one that the owner chose among several. A name is that of a folder under "Vellora". Hidden folders
/// and those that hold nothing never count, and nothing is made. Main thread only, for the settings.
namespace vellora::SinTelefono
{

/// The folders that hold something of a phone, by name.
QStringList conDatos();
/// The one that is shown; empty when there is none, or when the owner has yet to choose among several.
QString cual();
/// From now on that one: the owner's choice, or the folder of a phone that is here.
void recordar(const QString &carpeta);

/// Closes "Vellora" to everybody else, and once all folders in it: older versions left that to the umask. Links are not
/// followed, and folders of others stay as they are. Off the main thread; `tambienLoDeDentro` as `faltaCerrar` says.
void cerrarALosDemas(bool tambienLoDeDentro);
bool faltaCerrar();
void yaCerrado();

} // namespace vellora::SinTelefono
