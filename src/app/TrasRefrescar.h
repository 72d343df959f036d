#pragma once

namespace vellora
{

class Modelo;

/// What the window asks of the phone after each refresh, in this order. Main thread only; nothing here waits.
void trasRefrescar(Modelo &modelo);

} // namespace vellora
