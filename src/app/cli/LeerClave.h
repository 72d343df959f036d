#pragma once

#include <QString>

#include <optional>

namespace vellora
{

/// A password from the terminal, typed twice and not shown, or the first line of standard input when that is no
/// terminal. Absent when there is none, when the two differ (which is said), or when it was interrupted.
std::optional<QString> leerClave();

} // namespace vellora
