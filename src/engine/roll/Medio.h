#pragma once

#include "core/Resultado.h"

#include <QByteArray>

namespace vellora::motor
{

/// SHA-256 of an open file as the medium holds it, not as the machine remembers it: what has been written is put on the
/// disk, its pages are dropped from memory, and it is read past the page cache where the file system can do that. Fails
/// with words that continue "su copia …" when it cannot be read whole, or when its pages do not leave memory and there
/// is no way around them. What a file system keeps in a memory of its own (a driver in user space, the server of a
/// share, the disk itself) cannot be dropped from here. The descriptor is the caller's and is left open for direct
/// reading.
Resultado<QByteArray> huellaDelMedio(int descriptor);

} // namespace vellora::motor
