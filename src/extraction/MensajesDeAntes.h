#pragma once

#include "core/EscritorDeTexto.h"

namespace vellora::Extraccion
{

/// What a chat's file said and the one that is about to take its place does not: messages that are no longer on the
/// phone. They are added to "NAME (de copias anteriores).txt" beside it, each once, before the file is replaced.
/// `numero`: of a working file that nobody else uses. False when they could not be kept; then the file must stay.
bool guardarMensajesDeAntes(CarpetaDeDestino &carpeta, EscritorDeTexto &nuevo, int numero);

} // namespace vellora::Extraccion
