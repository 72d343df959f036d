#pragma once

#include "core/CarpetaDeDestino.h"

#include <QByteArray>
#include <QString>

namespace vellora::Extraccion
{

/// Copies a whole folder of the unpacked backup to the folder `nombre` inside `dentro` of the destination, in place of
/// an earlier one. The new one is made beside it and takes its place at the end, so that a run that is ended leaves one
/// of them whole. Gives the number of files that stand there, 0 when there was nothing to copy or it could not be put
/// there.
qint64 copiarMedios(const QString &origen, CarpetaDeDestino &destino, const QByteArray &dentro,
                    const QByteArray &nombre);

} // namespace vellora::Extraccion
