#include "app/cli/Consola.h"
#include "app/cli/LeerClave.h"
#include "app/cli/TrabajoSinVentana.h"
#include "backups/ActivarCifrado.h"

using namespace Qt::StringLiterals;

namespace vellora
{

int ordenCifrar(const OpcionesDeOrden &opciones)
{
    const auto clave = leerClave();
    if (!clave)
        return SalidaMal;
    if (letrasDe(*clave) < minimoDeLetras) {
        Consola::palabras(u"La contraseña tiene que tener al menos %1 caracteres."_s.arg(minimoDeLetras));
        return SalidaMal;
    }
    const auto empezar = [clave](Modelo &modelo, const QString &udid) {
        activarCifrado(modelo.tarea(), udid, *clave, [](Cifrado) {});
    };
    const auto resultado = [](Modelo &, const QString &) {
        return QString();
    };
    return hacerSinVentana(opciones, {u"Copias cifradas de %1"_s, false, empezar, resultado},
                           u"Vellora ya está abierta. Ciérrala y vuelve a intentarlo."_s);
}

} // namespace vellora
