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

/// True of two open plain files with the same bytes.
bool sonIguales(int uno, int otro);

} // namespace vellora::motor
