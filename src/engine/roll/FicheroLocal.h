#pragma once

#include <QByteArrayView>
#include <QDateTime>

/// What a copy does to open files of the computer. Any thread.
namespace vellora::motor
{

/// False, with errno, when not all could be written.
bool escribir(int descriptor, QByteArrayView bytes);

/// Sets the date of a file to what the phone told; an invalid one changes nothing.
void ponerFecha(int descriptor, const QDateTime &modificado);

enum class Parecido { Igual, Principio, Otro };
/// How a file stands to a whole one: the same, its beginning, or something else.
Parecido comparar(int suyo, int entero);

} // namespace vellora::motor
