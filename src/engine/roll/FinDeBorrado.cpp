#include "engine/roll/FinDeBorrado.h"

#include "engine/Interrupcion.h"
#include "engine/roll/BaseDeFotos.h"

using namespace Qt::StringLiterals;

namespace vellora::motor
{

int contarCorte(const Borrado &borrado, const CuentaDeBorrado &cuenta, Conexiones &conexiones, Avisos &avisar)
{
    auto &afc = conexiones.primera();
    // Once some have gone, the app's list tells of photos that are no more, also when the owner stops here.
    const bool listaBorrada =
        borrado.conLista && borrado.todoMirado && cuenta.borrados > 0 && !afc.perdido() && borrarBaseDeFotos(afc);
    avisar.avisar(u"cortado"_s, {{u"borrados"_s, cuenta.borrados},
                                 {u"quedan"_s, borrado.ficheros - cuenta.borrados},
                                 {u"liberados"_s, cuenta.liberados},
                                 {u"lista_borrada"_s, listaBorrada}});
    if (Interrupcion::pedida())
        return Interrupcion::estado;
    if (borrado.parada)
        return avisar.error(*borrado.parada);
    return avisar.error(u"El iPhone ha dejado de responder cuando iban %1 archivos borrados. Mira el cable y vuelve a "
                        "intentarlo."_s.arg(cuenta.borrados));
}

int acabarBorrado(const Borrado &borrado, const CuentaDeBorrado &cuenta, Conexiones &conexiones, Avisos &avisar)
{
    auto &afc = conexiones.primera();
    if (borrado.parada || Interrupcion::pedida() || afc.perdido())
        return contarCorte(borrado, cuenta, conexiones, avisar);
    const auto carrete = leerCarrete(conexiones);
    if (!carrete)
        return contarCorte(borrado, cuenta, conexiones, avisar);
    for (const auto &problema : carrete->problemas)
        avisar.linea(problema);
    const bool todoMirado = borrado.todoMirado && carrete->problemas.isEmpty();
    if (borrado.conLista && cuenta.borrados > 0 && !todoMirado)
        avisar.linea(
            u"La lista de la app Fotos se queda como está: el iPhone no me ha dejado mirar todas sus carpetas."_s);
    const bool listaBorrada = borrado.conLista && todoMirado && cuenta.borrados > 0 && borrarBaseDeFotos(afc);
    QJsonObject fin{{u"borrados"_s, cuenta.borrados},      {u"liberados"_s, cuenta.liberados},
                    {u"siguen_ahi"_s, cuenta.siguenAhi()}, {u"sin_prueba"_s, cuenta.sinPrueba},
                    {u"se_quedan"_s, borrado.seQuedan},    {u"sin_mirar"_s, carrete->problemas.size()},
                    {u"lista_borrada"_s, listaBorrada}};
    if (todoMirado)
        fin[u"quedan_en_carrete"_s] = contarElementos(*carrete);
    avisar.avisar(u"fin"_s, fin);
    return cuenta.siguenAhi() == 0 ? 0 : 1;
}

} // namespace vellora::motor
