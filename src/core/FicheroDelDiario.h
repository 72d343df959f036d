#pragma once

#include "core/Diario.h"

/// The journal's file; its form is told at `Diario`. Any thread.
namespace vellora
{

/// "enMarcha", "bien", "mal" or "cancelada".
QString textoDeEstado(Actividad::Estado estado);

/// The entries of the file as they stand there, malformed ones left out. An absent file is an empty journal; `ilegible`
/// tells of one that is there and is none.
QList<Actividad> leerDiario(const QString &fichero, bool *ilegible = nullptr);
/// Gives a file that is no journal another name beside it, so that a new one can begin. The new name; empty when there
/// is nothing to do, or it cannot be done.
QString apartarDiario(const QString &fichero);

/// The entries in the form of the file.
QByteArray diarioEnJson(const QList<Actividad> &actividades);

/// Writes the file whole (temporary name, flush, rename), for its owner alone, making its folder. A failure leaves the
/// old file.
void escribirDiario(const QString &fichero, const QList<Actividad> &actividades);

} // namespace vellora
