#pragma once

#include "contenido/Contexto.h"

namespace simulado
{

/// Writes into a JPEG file what the phone's camera writes: maker, model, dates with their offset, exposure, lens, place
/// and, in a Live Photo or a burst, the identifiers of the maker's note. False when the file cannot be changed.
bool ponExif(const QString &jpeg, const Foto &foto);

} // namespace simulado
