#pragma once

#include <QString>

#include <optional>

namespace vellora
{

class Programa;

/// What follows each reading of the phones, in its order; `antes` is the UDID selected before it.
void trasRefrescar(Programa &programa, const std::optional<QString> &antes);

} // namespace vellora
