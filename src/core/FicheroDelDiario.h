#pragma once

#include "core/Diario.h"

/// The journal's file; its form is told at `Diario`. Any thread.
namespace vellora
{

/// "enMarcha", "bien", "mal" or "cancelada".
QString textoDeEstado(Actividad::Estado estado);

/// The entries of the file as they stand there; empty when it is missing, unreadable or any entry is malformed.
QList<Actividad> leerDiario(const QString &fichero);

/// The entries in the form of the file.
QByteArray diarioEnJson(const QList<Actividad> &actividades);

/// Writes the file whole (temporary name, flush, rename), making its folder. A failure leaves the old file.
void escribirDiario(const QString &fichero, const QList<Actividad> &actividades);

} // namespace vellora
