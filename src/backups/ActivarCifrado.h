#pragma once

#include <QString>

#include <functional>

namespace vellora
{

class Tarea;

enum class Cifrado {
    No,        ///< the phone did not take it
    Puesto,    ///< and the secret store has its password
    SinGuardar ///< the phone encrypts with a password that only the owner has
};

/// Switches on the encryption of the phone's backups with the owner's password and keeps that password in the secret
/// store. Returns at once; `alTerminar` is called once, on the main thread. Without idevicebackup2 that is at once, and
/// no job is opened. Main thread.
void activarCifrado(Tarea &tarea, const QString &udid, const QString &clave,
                    const std::function<void(Cifrado)> &alTerminar);

/// Characters as a person counts them: "ñ" is one however it is written, and so is a flag.
qsizetype letrasDe(const QString &clave);
constexpr qsizetype minimoDeLetras = 6;

} // namespace vellora
