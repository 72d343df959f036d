#include "app/TrasRefrescar.h"

#include "session/Modelo.h"

namespace vellora
{

void trasRefrescar(Modelo &modelo)
{
    modelo.comprobarAcceso();
}

} // namespace vellora
