#include "session/DatosBateria.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace vellora
{

int DatosBateria::salud() const
{
    if (maxima < 1 || disenio < 1)
        return 0;
    return static_cast<int>(std::lround(static_cast<double>(maxima) / static_cast<double>(disenio) * 100.0));
}

bool DatosBateria::tocaCambiarla() const
{
    return maxima >= 1 && disenio >= 1 && salud() >= 1 && salud() <= 79;
}

QString DatosBateria::veredicto() const
{
    const auto queda = salud();
    if (queda == 0)
        return u"Sin datos"_s;
    if (queda > 89)
        return u"Como nueva"_s;
    if (queda > 84)
        return u"Muy bien"_s;
    if (queda > 79)
        return u"Bien, con uso"_s;
    return queda < 70 ? u"Para cambiar"_s : u"Gastada"_s;
}

bool InfoRed::hayAlgo() const
{
    return avion || operador.isEmpty() || operador == "Desconocido"_L1 || !simEstado.toLower().contains("lista"_L1) ||
           !wifiOn;
}

} // namespace vellora
