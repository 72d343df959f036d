#pragma once

#include "session/Dispositivo.h"

#include <QString>
#include <QStringList>

#include <optional>

/// Where what belongs to each phone is kept. Nothing is created. Main thread only, for the settings.
namespace vellora::Carpetas
{

/// Folder of the phone under "Vellora": the one that holds its backup, else the one of its name, with the end of its
/// identifier where another phone of that name has its own; without a phone, the first folder there by name, or
/// "iPhone".
QString base(const std::optional<Dispositivo> &elegido);
QString datos(const std::optional<Dispositivo> &elegido);
/// Name of the setting that keeps the next one.
QString claveCarpetaFotos(const std::optional<Dispositivo> &elegido);
/// The folder that the owner chose for the phone's photos, while it is there; else "Fotos".
QString fotos(const std::optional<Dispositivo> &elegido);
/// The folder whose photos are looked into: "Fotos recuperadas" when it holds more than the other.
QString fotosParaIA(const std::optional<Dispositivo> &elegido);
/// Whether "Vellora" holds the folders of more than one phone.
bool hayVarias();
/// The folders of backups of all phones that have a folder here. Any thread.
QStringList deCopias();

} // namespace vellora::Carpetas
