#pragma once

#include "core/Ejecutor.h"

namespace vellora
{

/// The environment for idevicebackup2. It holds back its lines while it writes to a pipe; a preloaded library of the
/// base system makes it write each one as it comes.
Ejecutor::Entorno entornoDeHerramienta();

} // namespace vellora
