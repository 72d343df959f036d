#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace simulado
{

/// A QuickTime file made by hand: no encoder is needed, and common players and readers open it.
/// Motion JPEG, each picture shown 1/`ritmo` seconds. `vinculo`, if not empty, is the content identifier that joins the
/// two halves of a Live Photo; `unix` is the creation date.
QByteArray cintaDeImagenes(const std::vector<QByteArray> &jpegs, int ancho, int alto, int ritmo, qint64 unix,
                           const QString &vinculo);
/// A tone of 16 bits at 8000 samples a second, in the same kind of file.
QByteArray cintaDeSonido(double segundos, int hercios, qint64 unix);

} // namespace simulado
