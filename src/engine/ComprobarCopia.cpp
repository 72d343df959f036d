#include "core/CarpetaDeTrabajo.h"
#include "core/Plist.h"
#include "engine/DeLaCopia.h"
#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "engine/backup/ComprobadorDeCopia.h"

#include <QFileInfo>
#include <QJsonArray>

#include <sys/statvfs.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr qint64 bloqueDeCifrado = 16;
// Less than this left on the volume counts as full: a batch of small files no longer fits.
constexpr qint64 sitioMinimo = 1'000'000;

struct Dictamen {
    QString estado = u"rota"_s;
    bool cifrada = false;
    QStringList detalles;
};

bool sinSitio(const QString &carpeta)
{
    struct statvfs estado = {};
    if (statvfs(QFile::encodeName(carpeta).constData(), &estado) != 0)
        return false;
    return estado.f_bavail * estado.f_frsize < static_cast<quint64>(sitioMinimo);
}

/// What the three small files say; a sentence when it is not well.
std::optional<QString> porFuera(const QString &carpeta, Dictamen &dictamen)
{
    const auto estado = Plist::leer(carpeta + u"/Status.plist"_s);
    if (!estado || estado->raiz()["SnapshotState"].texto() != u"finished"_s)
        return u"La copia no está marcada como terminada."_s;
    const auto manifiesto = Plist::leer(carpeta + u"/Manifest.plist"_s);
    if (!manifiesto)
        return u"No se puede leer Manifest.plist."_s;
    dictamen.cifrada = manifiesto->raiz()["IsEncrypted"].logico().value_or(false);
    const auto tamano = QFileInfo(carpeta + u"/Manifest.db"_s).size();
    const bool listaCifrada = dictamen.cifrada && manifiesto->raiz()["ManifestKey"].datos();
    if (tamano == 0 || (listaCifrada && tamano % bloqueDeCifrado != 0))
        return u"Manifest.db está vacío o cortado."_s;
    return {};
}

/// From what the walk found to the verdict.
void dictaminar(const CuentaDeComprobacion &cuenta, qint64 rehusados, bool lleno, Dictamen &dictamen)
{
    auto &detalles = dictamen.detalles;
    if (cuenta.ausentes > 0)
        detalles << u"Ficheros de la lista que no están en la copia: %1."_s.arg(cuenta.ausentes);
    if (cuenta.cortados > 0)
        detalles << u"Ficheros que no están enteros en la copia: %1."_s.arg(cuenta.cortados);
    if (cuenta.atrasados > 0)
        detalles << u"Ficheros más cortos de lo que dice la lista: %1."_s.arg(cuenta.atrasados);
    if (cuenta.sinClave > 0)
        detalles << u"Ficheros que solo el propio iPhone puede abrir: %1."_s.arg(cuenta.sinClave);
    if (!cuenta.nombres.isEmpty())
        detalles << u"Entre ellos: %1"_s.arg(cuenta.nombres.join(u", "_s));
    if (!cuenta.listaEntera)
        detalles << u"No se puede leer Manifest.db."_s;
    // On a full disk nobody can tell which of the two a shorter file is.
    const bool cortos = cuenta.cortados > 0 || (lleno && cuenta.atrasados > 0);
    if (cuenta.listaEntera && !cortos && cuenta.ausentes <= rehusados)
        dictamen.estado = u"entera"_s;
}

/// Only what says something of the backup itself makes it a bad one.
void cerrada(CopiaAbierta::Cierre cierre, const QString &motivo, Dictamen &dictamen)
{
    if (cierre == CopiaAbierta::Cierre::NoHay || cierre == CopiaAbierta::Cierre::Danada) {
        dictamen.detalles << u"No se puede leer Manifest.db."_s;
        return;
    }
    dictamen.estado = u"sin_comprobar"_s;
    dictamen.detalles << motivo;
}

} // namespace

int comprobarCopia(const QStringList &argumentos, Avisos &avisar)
{
    const auto &carpeta = argumentos[1];
    Dictamen dictamen;
    const auto decir = [&] {
        const bool lleno = dictamen.estado == "rota"_L1 && sinSitio(carpeta);
        avisar.avisar(u"comprobacion"_s, {{u"estado"_s, dictamen.estado},
                                          {u"cifrada"_s, dictamen.cifrada},
                                          {u"disco_lleno"_s, lleno},
                                          {u"detalles"_s, QJsonArray::fromStringList(dictamen.detalles)}});
        return 0;
    };
    if (const auto defecto = porFuera(carpeta, dictamen)) {
        dictamen.detalles << *defecto;
        return decir();
    }
    // Not on the disk of the backup, which may be full just now.
    const auto privada = CarpetaDeTrabajo::nueva();
    if (!privada)
        return avisar.error(privada.motivo());
    const auto deTrabajo = CarpetaDeDestino::abrir(privada->ruta());
    if (!deTrabajo)
        return avisar.error(deTrabajo.motivo());
    auto cierre = CopiaAbierta::Cierre::Danada;
    const auto copia = abrirLaCopia(argumentos[0], carpeta, *deTrabajo, avisar, &cierre);
    if (!copia) {
        cerrada(cierre, copia.motivo(), dictamen);
        return decir();
    }
    qint64 cuantos = 0;
    copia->porCadaFichero([&](const CopiaAbierta::Entrada &) { return ++cuantos, !Interrupcion::pedida(); });
    avisar.total(cuantos);
    const auto cuenta = comprobarFicheros(*copia, [&](qint64 hechos) { avisar.progreso(hechos); });
    if (Interrupcion::pedida())
        return Interrupcion::estado;
    dictaminar(cuenta, argumentos.value(2).toLongLong(), sinSitio(carpeta), dictamen);
    return decir();
}

} // namespace vellora::motor
