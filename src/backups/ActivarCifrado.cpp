#include "backups/ActivarCifrado.h"

#include "backups/EntornoDeHerramienta.h"
#include "core/Herramientas.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "platform/Llavero.h"

#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// The store may ask its owner to unlock it, so the window must not wait for it.
void guardarYCerrar(Tarea &tarea, const QString &udid, const QString &clave,
                    const std::function<void(Cifrado)> &alTerminar)
{
    const auto guardar = [clave, udid] {
        return Llavero::guardar(clave, udid);
    };
    enSegundoPlano(&tarea, guardar, [&tarea, alTerminar, numero = tarea.trabajo()](bool guardada) {
        if (!tarea.sigue(numero))
            return alTerminar(Cifrado::No);
        if (!guardada)
            tarea.apunta(u"No he podido guardar la contraseña en el Llavero. Apúntala tú: sin ella no se puede abrir "
                         "ninguna copia."_s);
        tarea.cerrar(true);
        alTerminar(guardada ? Cifrado::Puesto : Cifrado::SinGuardar);
    });
}

} // namespace

qsizetype letrasDe(const QString &clave)
{
    QTextBoundaryFinder letras(QTextBoundaryFinder::Grapheme, clave);
    qsizetype cuantas = 0;
    while (letras.toNextBoundary() >= 0)
        ++cuantas;
    return cuantas;
}

void activarCifrado(Tarea &tarea, const QString &udid, const QString &clave,
                    const std::function<void(Cifrado)> &alTerminar)
{
    const auto &herramienta = Herramientas::idevicebackup2();
    if (!herramienta)
        return alTerminar(Cifrado::No);
    tarea.empezar(u"Activando el cifrado de las copias"_s, u"Desbloquea el iPhone: te pedirá confirmar"_s);
    tarea.apunta(
        u"Si pierdes esta contraseña, las copias NO se pueden recuperar. Queda guardada en el Llavero del Mac."_s);
    auto entorno = entornoDeHerramienta();
    entorno[u"BACKUP_PASSWORD"_s] = clave;
    tarea.ejecutorMotor.entornoExtra = entorno;
    const auto linea = [&tarea, clave, numero = tarea.trabajo()](QString texto) {
        // The tool repeats nothing of it today; the log must not depend on that.
        if (tarea.sigue(numero))
            tarea.apunta(texto.replace(clave, u"••••••"_s));
    };
    const auto final = [&tarea, udid, clave, alTerminar, numero = tarea.trabajo()](int codigo) {
        if (!tarea.sigue(numero))
            return alTerminar(Cifrado::No);
        if (codigo == 0) {
            tarea.ponDetalle(u"Cifrado activado"_s);
            return guardarYCerrar(tarea, udid, clave, alTerminar);
        }
        tarea.ponDetalle(u"No se pudo activar (código %1)"_s.arg(codigo));
        tarea.cerrar(false);
        alTerminar(Cifrado::No);
    };
    tarea.ejecutorMotor.lanzar(*herramienta, {u"-u"_s, udid, u"encryption"_s, u"on"_s, clave}, linea, final);
}

} // namespace vellora
