#include "app/cli/TrabajoSinVentana.h"
#include "backups/Copias.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

int ordenCopia(const OpcionesDeOrden &opciones)
{
    const auto empezar = [](Modelo &modelo, const QString &) {
        // Nobody is asked for a password here; switching on the encryption is another command.
        Copias(modelo, [](const QString &) { return std::nullopt; }).pedirCopia();
    };
    const auto resultado = [](Modelo &modelo, const QString &udid) {
        return QString(modelo.carpetaCopias() + u'/' + udid);
    };
    return hacerSinVentana(opciones, {u"Copia de seguridad de %1"_s, false, empezar, resultado},
                           u"Vellora ya está abierta. Haz la copia desde su ventana, o ciérrala."_s);
}

} // namespace vellora
