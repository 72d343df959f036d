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

/// No picture of this program's memory after a fall: for every program of ours, from its beginning.
void sinVolcados();
/// The same, and nobody but root looks into the living one either. From the moment that it holds a secret; not before
/// in the window, because a desktop's services take a program that they cannot look at for a stranger.
void guardarSecretos();

} // namespace vellora
