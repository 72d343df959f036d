#pragma once

#include <QString>

namespace vellora
{

/// True when the command line of any process of the computer but this one holds `palabra`. Reads /proc; a few
/// milliseconds. Any thread.
bool hayProcesoCon(const QString &palabra);

/// True when this program runs a second time, by the same or another name.
bool hayOtroProcesoDelPrograma();

} // namespace vellora
