#pragma once

#include <QStringList>

namespace simulado
{

/// The photographs of Debian's wallpaper packages that are on this computer (docs/fotos-de-muestra.md), in a fixed
/// order.
QStringList fotosDeMuestra();

} // namespace simulado
