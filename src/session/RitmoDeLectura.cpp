#include "session/RitmoDeLectura.h"

namespace vellora
{

void RitmoDeLectura::leida(bool entera, qint64 ahora)
{
    ultima = ahora;
    cambiado = false;
    if (entera && !fallida)
        fallos = 0;
    fallida = false;
    if (!entera)
        fallo();
}

void RitmoDeLectura::fallo()
{
    if (!fallida)
        ++fallos;
    fallida = true;
}

void RitmoDeLectura::algoCambio()
{
    cambiado = true;
    fallos = 0;
}

bool RitmoDeLectura::toca(qint64 ahora, bool enVista, bool hayAvisos) const
{
    const auto pasados = ahora - ultima;
    if (cambiado || !hayAvisos)
        return true;
    if (!fallida)
        return enVista && pasados >= segundosEntreLecturas;
    return fallos <= fallosSeguidos || pasados >= (enVista ? segundosEntreFallos : segundosEntreLecturas);
}

} // namespace vellora
