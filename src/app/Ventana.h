#pragma once

namespace vellora
{

/// Runs the program with its window until the owner closes it; gives the exit code (2 when there is no window to show).
int abrirVentana(int &argc, char **argv);

} // namespace vellora
