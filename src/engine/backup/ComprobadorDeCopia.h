#pragma once

#include "engine/backup/CopiaAbierta.h"

#include <QByteArray>
#include <QStringList>

#include <functional>
#include <optional>

namespace vellora::motor
{

/// What a walk over all files of a backup found.
struct CuentaDeComprobacion {
    qint64 ficheros = 0;
    qint64 ausentes = 0;  ///< in the list, and not in the backup
    qint64 cortados = 0;  ///< bytes are missing from them
    qint64 atrasados = 0; ///< whole, and shorter than the list says: noted at another moment
    qint64 sinClave = 0;  ///< of classes that the password does not open: looked at from outside only
    QStringList nombres;  ///< the first of those that are absent or cut, for the log
    bool listaEntera = false;
};

/// Looks at each file that the list names: it must be there, long enough, a whole number of cipher blocks, and end in
/// right padding where it is ciphered. What the list says of a length is often of another moment, above all for
/// databases: a shorter file counts as cut only when its own bytes say so. Of a ciphered file the two ends are read, of
/// others nothing unless they are short. `avance`: files done. Ends early when the engine is asked to. One thread.
CuentaDeComprobacion comprobarFicheros(const CopiaAbierta &copia, const std::function<void(qint64)> &avance);

/// What tells whether a file that is shorter than it was said to be has lost bytes on the computer.
struct Muestra {
    QByteArray nombre; ///< last part of its path on the phone
    QByteArray cabeza; ///< its first bytes in clear, at least 100 of them if it has as many
    qint64 largo = 0;  ///< in clear
    qint64 declarado = 0;
};
/// True for a database that ends before its own last page, for a log with part of a frame, and for anything else that
/// ends or is short by whole pages of the disk, as a full disk leaves it.
bool pareceCortado(const Muestra &muestra);

} // namespace vellora::motor
