#pragma once

#include <QString>
#include <QUrl>

namespace vellora
{

/// Hands an address, or a file, to the program that the desktop has for it. Returns at once; a failure is silent.
void abrirDireccion(const QUrl &direccion);
/// Whether some program takes addresses of that scheme ("whatsapp"). Milliseconds.
bool hayQuienAbra(const QString &esquema);

} // namespace vellora
