#include "photos/CopiarFotos.h"

#include "core/Herramientas.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"

#include <QDir>

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// How far the copy is; a notice that does not tell leaves the last count standing.
struct Contadores {
    qint64 copiados = 0;
    qint64 saltados = 0;
};

void alAvisar(Tarea &tarea, Contadores &cuenta, const Motor::Aviso &aviso)
{
    const auto entero = [&aviso](QLatin1StringView clave) {
        return aviso.entero(clave).value_or(0);
    };
    if (aviso.tipo == "total"_L1) {
        tarea.ponAvance(tarea.hechos(), entero("n"_L1));
        tarea.ponInicio(QDateTime::currentDateTimeUtc());
        tarea.apunta(u"El carrete tiene %1 archivos."_s.arg(entero("n"_L1)));
        tarea.ponDetalle(u"Comparando con lo que ya está en el Mac…"_s);
    } else if (aviso.tipo == "progreso"_L1) {
        tarea.ponAvance(entero("hechos"_L1), tarea.deTotal());
        cuenta.copiados = aviso.entero("copiados"_L1).value_or(cuenta.copiados);
        cuenta.saltados = aviso.entero("saltados"_L1).value_or(cuenta.saltados);
        tarea.ponDetalle(u"%1 nuevos · %2 ya estaban · %3"_s.arg(cuenta.copiados)
                             .arg(cuenta.saltados)
                             .arg(aviso.texto("fichero"_L1).value_or(QString())));
    } else if (aviso.tipo == "fallo"_L1) {
        tarea.apunta(u"No pude con %1: %2"_s.arg(aviso.texto("fichero"_L1).value_or(u"?"_s),
                                                 aviso.texto("motivo"_L1).value_or(QString())));
    } else if (aviso.tipo == "fin"_L1) {
        const auto copiados = entero("copiados"_L1);
        const auto saltados = entero("saltados"_L1);
        tarea.ponDetalle(u"%1 archivos nuevos copiados, %2 ya los tenías"_s.arg(copiados).arg(saltados));
        tarea.apunta(u"Terminado: %1 nuevos, %2 repetidos, %3 con problemas."_s.arg(copiados).arg(saltados).arg(
            entero("fallos"_L1)));
    } else if (aviso.tipo == "error"_L1) {
        tarea.apunta(u"Error: "_s + aviso.texto("motivo"_L1).value_or(QString()));
    }
}

/// The folders among what `afc ls /DCIM` prints; hidden ones are none.
QStringList carpetasEn(const QString &salida)
{
    QStringList carpetas;
    for (const auto &linea : salida.split(u'\n', Qt::SkipEmptyParts)) {
        const auto carpeta = linea.trimmed();
        if (carpeta.startsWith("/DCIM/"_L1) && !carpeta.contains("/."_L1))
            carpetas << carpeta;
    }
    return carpetas;
}

struct CopiaPorCarpetas {
    QStringList carpetas;
    QString udid;
    QString destino;
    QString py;
    int numero = 0; ///< of the job
};

void siguienteCarpeta(Tarea &tarea, const std::shared_ptr<const CopiaPorCarpetas> &copia, qsizetype indice);

void acabar(Tarea &tarea, const CopiaPorCarpetas &copia)
{
    enSegundoPlano(
        &tarea, [destino = copia.destino] { return contarFicheros(destino); },
        [&tarea, numero = copia.numero](qint64 cuantos) {
            if (!tarea.sigue(numero))
                return;
            tarea.apunta(u"Listo: %1 fotos y videos en el Mac."_s.arg(cuantos));
            tarea.ponDetalle(u"%1 archivos copiados"_s.arg(cuantos));
            tarea.cerrar(true);
        });
}

void siguienteCarpeta(Tarea &tarea, const std::shared_ptr<const CopiaPorCarpetas> &copia, qsizetype indice)
{
    if (tarea.cancelada() || !tarea.sigue(copia->numero))
        return;
    if (indice >= copia->carpetas.size())
        return acabar(tarea, *copia);
    const auto &carpeta = copia->carpetas[indice];
    const auto cual = u"Carpeta %1 de %2"_s.arg(indice + 1).arg(copia->carpetas.size());
    tarea.ponDetalle(cual);
    const QStringList orden{u"afc"_s,    u"pull"_s,  carpeta, copia->destino, u"--ignore-errors"_s,
                            u"--udid"_s, copia->udid};
    const auto linea = [&tarea, numero = copia->numero, cual](const QString &texto) {
        if (!tarea.sigue(numero))
            return;
        if (texto.contains(u':') && texto.contains(u'%'))
            tarea.ponDetalle(cual + u" - copiando "_s + texto.section(u':', 0, 0));
        else if (!texto.isEmpty())
            tarea.apunta(texto);
    };
    tarea.ejecutor.lanzar(copia->py, orden, linea, [&tarea, copia, indice](int codigo) {
        if (codigo != 0 && tarea.sigue(copia->numero))
            tarea.apunta(u"Aviso en %1 (codigo %2); sigo con las demas."_s.arg(copia->carpetas[indice]).arg(codigo));
        siguienteCarpeta(tarea, copia, indice + 1);
    });
}

} // namespace

void copiarFotosRapido(Tarea &tarea, const QString &udid, const QString &destino)
{
    // What cannot be made is told by the engine.
    QDir().mkpath(destino);
    tarea.muestra();
    const auto cuenta = std::make_shared<Contadores>();
    tarea.lanzarMotorPublico(
        {u"copiar"_s, udid, destino}, u"Copiando fotos y vídeos"_s, false,
        [&tarea, cuenta](const Motor::Aviso &aviso) { alAvisar(tarea, *cuenta, aviso); },
        [&tarea](int codigo) { tarea.cerrar(codigo == 0); });
    tarea.ponCarpetaResultado(destino);
}

void copiarFotos(Tarea &tarea, const QString &udid, const QString &destino)
{
    tarea.empezar(u"Copiando fotos y videos"_s, u"Mirando que hay en el carrete..."_s);
    tarea.ponCarpetaResultado(destino);
    QDir().mkpath(destino);
    const auto &py = Herramientas::pymobiledevice();
    if (!py) {
        tarea.apunta(u"Falta pymobiledevice3, la herramienta que lee el carrete."_s);
        return tarea.cerrar(false);
    }
    tarea.vigilarCarpeta(destino);
    const auto listar = [py = *py, udid] {
        const QStringList orden{u"afc"_s, u"ls"_s, u"/DCIM"_s, u"--udid"_s, udid};
        return carpetasEn(Ejecutor::rapido(py, orden, 120));
    };
    enSegundoPlano(
        &tarea, listar, [&tarea, py = *py, udid, destino, numero = tarea.trabajo()](const QStringList &carpetas) {
            if (!tarea.sigue(numero))
                return;
            if (carpetas.isEmpty()) {
                tarea.apunta(u"No he podido leer el carrete. Comprueba que el iPhone esta desbloqueado."_s);
                return tarea.cerrar(false);
            }
            tarea.apunta(u"El carrete tiene %1 carpetas."_s.arg(carpetas.size()));
            siguienteCarpeta(
                tarea, std::make_shared<CopiaPorCarpetas>(CopiaPorCarpetas{carpetas, udid, destino, py, numero}), 0);
        });
}

} // namespace vellora
