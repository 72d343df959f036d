#pragma once

#include <QJsonDocument>
#include <QString>

/// The two streams of a command. Main thread only.
///
/// What is written comes from anybody: names of phones, messages, what tools say. Nothing of it reaches a terminal that
/// the terminal would obey, or that would show it in another order than it was written.
namespace vellora::Consola
{

/// One line on standard output.
void resultado(const QString &linea);
/// One line of fields with a tab between two; none has a tab or a line of its own.
void resultado(const QStringList &campos);
void resultado(const QJsonDocument &documento);
/// One line on standard error.
void palabras(const QString &linea);

/// Whether standard error is a terminal, where a progress line may be repainted.
bool hayTerminal();
/// Repaints the progress line; `borrarAvance` clears it before other words.
void avance(const QString &linea);
void borrarAvance();

/// Tells what is missing when the phone's tools are; gives false then.
bool hayHerramientas();

} // namespace vellora::Consola
