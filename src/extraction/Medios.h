#pragma once

#include "core/CarpetaDeDestino.h"

#include <QString>

namespace vellora::Extraccion
{

/// Brings a whole folder of the unpacked backup into the folder `dentro` of the results. What is there stays: media
/// that are no longer on the phone, or that this backup does not hold, are the owner's still. Gives how many files of
/// the backup stand there; the rest could not be written.
qint64 copiarMedios(const QString &origen, CarpetaDeDestino &destino, const QString &dentro);

} // namespace vellora::Extraccion
