#include "backups/RestaurarCopia.h"

#include "backups/CarpetaDeCopias.h"
#include "backups/CopiasAnteriores.h"
#include "backups/EntornoDeHerramienta.h"
#include "backups/ExplicarFallo.h"
#include "core/Herramientas.h"
#include "core/Tarea.h"
#include "platform/Llavero.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

void restaurarCopia(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const QString &origen)
{
    const auto &herramienta = Herramientas::idevicebackup2();
    if (!herramienta)
        return;
    tarea.empezar(u"Devolviendo la copia al iPhone"_s, u"Esto tarda bastante. No desconectes el cable."_s);
    tarea.apunta(u"El iPhone se reiniciará al terminar."_s);
    tarea.apunta(u"No toques el cable ni cierres la app hasta que acabe."_s);
    // Nobody may put another backup in its place meanwhile.
    const auto cerrojo =
        std::make_shared<Descriptor>(CarpetaDeCopias::tomar(CopiasAnteriores::carpetaQueSeToma(carpetaCopias), 0));
    QStringList orden{u"-u"_s, udid};
    if (origen != udid)
        orden << u"--source"_s << origen;
    orden << u"restore"_s;
    auto entorno = entornoDeHerramienta();
    const auto clave = Llavero::leer(origen);
    if (clave) {
        entorno[u"BACKUP_PASSWORD"_s] = *clave;
        orden << u"--password"_s << *clave;
    }
    orden << u"--settings"_s << u"--reboot"_s << carpetaCopias;
    tarea.ejecutorMotor.entornoExtra = entorno;
    const auto linea = [&tarea, clave, numero = tarea.trabajo()](QString texto) {
        if (!tarea.sigue(numero))
            return;
        if (const auto parte = porcentajeEn(texto)) {
            tarea.ponAvance(*parte, 100);
            return tarea.ponDetalle(u"%1% devuelto"_s.arg(*parte));
        }
        // The tool repeats nothing of it today; the log must not depend on that.
        tarea.apunta(clave ? texto.replace(*clave, u"••••••"_s) : texto);
    };
    const auto final = [&tarea, cerrojo, numero = tarea.trabajo()](int codigo) {
        if (!tarea.sigue(numero))
            return;
        tarea.ponDetalle(codigo == 0 ? u"Copia devuelta. El iPhone se está reiniciando."_s
                                     : u"No se pudo completar (código %1)"_s.arg(codigo));
        tarea.cerrar(codigo == 0);
    };
    tarea.ejecutorMotor.lanzar(*herramienta, orden, linea, final);
}

} // namespace vellora
