#pragma once

#include <QString>

#include <functional>

namespace vellora
{

class Tarea;

/// Switches on the encryption of the phone's backups with the owner's password and keeps that password in the secret
/// store. Returns at once; `alTerminar` is called once, on the main thread, with whether the phone encrypts now.
/// Without idevicebackup2 that is at once, and no job is opened. Main thread.
void activarCifrado(Tarea &tarea, const QString &udid, const QString &clave,
                    const std::function<void(bool)> &alTerminar);

/// Characters as a person counts them: "ñ" is one however it is written, and so is a flag.
qsizetype letrasDe(const QString &clave);
constexpr qsizetype minimoDeLetras = 6;

} // namespace vellora
