#pragma once

#include "core/BaseDeDatos.h"

#include <QByteArray>
#include <QString>

/// The dates of the phone's databases as dd/MM/yyyy HH:mm. Any thread.
///
/// Most are counts of seconds since 2001-01-01 00:00:00 UTC or, above 1,000,000,000,000 in size, of nanoseconds; those
/// of earlier days are negative. 0, what is no number and what lies before 1900 are no date and add nothing. 1604 is
/// what phones write for a year that the owner does not know: day and month are then given alone.
namespace vellora::Extraccion
{

/// In the computer's time zone.
QString fechaApplePublica(const QString &texto);

enum class Zona {
    DelOrdenador, ///< the moment, told by the computer's clock
    Ninguna,      ///< the day and hour that the phone showed, wherever it was
};
/// A column of a row, added to a line.
void ponerFecha(QByteArray &linea, const Fila &fila, int columna, Zona zona = Zona::DelOrdenador);
/// The same of one that counts seconds since 1970.
void ponerFechaUnix(QByteArray &linea, const Fila &fila, int columna);
/// The same of one that counts from 2001 on older systems and from 1970 on newer ones. What would be 2032 by the older
/// count is a date by the newer one.
void ponerFechaDeLasDos(QByteArray &linea, const Fila &fila, int columna);

} // namespace vellora::Extraccion
