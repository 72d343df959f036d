#pragma once

#include "core/CarpetaDeDestino.h"

#include <QUuid>

namespace vellora
{

/// The locks of one journal among all programs that write to it: the window, the commands, the weekly backup. They lie
/// on bytes of a hidden file beside it, the first for whoever writes, one for each job that runs, and end with their
/// program however it dies. One thread.
class CerrojoDelDiario
{
public:
    explicit CerrojoDelDiario(const QString &fichero);

    /// Waits a second at most for the turn to write, making the file and its folder. Without the turn nothing is to be
    /// written.
    bool tomarTurno();
    void dejarTurno();

    /// Says that the job runs, until `parar` or the end of this object.
    void correr(const QUuid &trabajo);
    void parar(const QUuid &trabajo);
    /// True while a program other than this object holds the job.
    bool correEnOtro(const QUuid &trabajo);

private:
    bool abrir(bool aunqueFalte);

    QString ruta;
    Descriptor fichero;
};

} // namespace vellora
