#pragma once

#include "core/CarpetaDeDestino.h"

#include <optional>

/// Files whose names and kinds somebody else chose: those of a backup, of a phone, of another program. A pipe is read
/// without an end, a device may do anything, a link leads elsewhere; only a regular file is opened, and opening never
/// waits. Any thread.
namespace vellora
{

/// To read; invalid when there is no regular file of that name. A link is none, whatever it leads to.
Descriptor abrirAjeno(const QString &ruta);
/// The same for a path relative to an open folder.
Descriptor abrirAjeno(int carpeta, const QByteArray &relativa);

/// Length in bytes; absent when it is no regular file.
std::optional<qint64> largoDeAjeno(const QString &ruta);

/// The whole file; absent when it is none, cannot be read, or is longer than `maximo` bytes.
std::optional<QByteArray> leerAjeno(const QString &ruta, qint64 maximo);

} // namespace vellora
