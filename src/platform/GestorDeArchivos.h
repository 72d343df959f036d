#pragma once

#include <QString>

namespace vellora
{

/// Shows a file or folder selected in the desktop's file manager; where none answers on the session bus, opens the
/// folder with the desktop's own opener. Returns at once; a failure is silent.
void mostrarEnElGestor(const QString &ruta);

} // namespace vellora
