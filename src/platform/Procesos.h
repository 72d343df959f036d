#pragma once

#include <QString>
#include <QtGlobal>

namespace vellora
{

/// True when the command line of any process of the computer but this one holds `palabra`. Reads /proc; a few
/// milliseconds. Any thread.
bool hayProcesoCon(const QString &palabra);

/// Seconds of processor that a process has used so far; 0 when there is none of that identifier. Any thread.
double segundosDeProcesador(qint64 proceso);

/// True when this program runs a second time, by the same or another name.
bool hayOtroProcesoDelPrograma();

} // namespace vellora
