#include "engine/roll/BorradoSinCopia.h"

#include "engine/Interrupcion.h"

using namespace Qt::StringLiterals;

namespace vellora::motor
{

void contarElCamino(const CuentaDeBorrado &cuenta, const QString &ruta, Avisos &avisar)
{
    avisar.progreso(cuenta.borrados + cuenta.siguenAhi(),
                    {{u"copiados"_s, cuenta.borrados}, {u"fichero"_s, ruta.sliced(ruta.lastIndexOf(u'/') + 1)}});
}

int contarElPlan(const std::vector<FicheroDelCarrete> &ficheros, Avisos &avisar)
{
    qint64 bytes = 0;
    for (const auto &fichero : ficheros)
        bytes += fichero.ficha.tamano;
    avisar.avisar(u"plan"_s, {{u"a_borrar"_s, static_cast<qint64>(ficheros.size())}, {u"bytes"_s, bytes}});
    return 0;
}

void borrarSinCopia(const std::vector<const FicheroDelCarrete *> &ficheros, Afc &afc, CuentaDeBorrado &cuenta,
                    Avisos &avisar)
{
    for (const auto *fichero : ficheros) {
        if (Interrupcion::pedida() || afc.perdido())
            return;
        // The owner agreed to lose what was there then.
        const auto ahora = afc.ficha(fichero->ruta);
        const bool esEl = ahora && *ahora == fichero->ficha;
        const auto motivo = esEl    ? afc.borrar(fichero->ruta)
                            : ahora ? std::optional(u"Ha cambiado en el iPhone y se queda: "_s + fichero->ruta)
                                    : std::optional(ahora.motivo());
        if (afc.perdido())
            return;
        if (!motivo) {
            ++cuenta.borrados;
            cuenta.liberados += fichero->ficha.tamano;
        } else if ((ahora && !esEl) || !afc.faltaba()) {
            ++cuenta.negados;
            avisar.linea(*motivo);
        }
        contarElCamino(cuenta, fichero->ruta, avisar);
    }
}

} // namespace vellora::motor
