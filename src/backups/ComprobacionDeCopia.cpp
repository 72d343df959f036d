#include "backups/ComprobacionDeCopia.h"

#include "core/BaseDeDatos.h"
#include "core/Plist.h"

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr auto consultaDeFicheros = "SELECT fileID, file FROM Files WHERE flags = 1";
constexpr qint64 bloqueDeCifrado = 16;
// Less than this left on the volume counts as full: a batch of small files no longer fits.
constexpr qint64 sitioMinimo = 1'000'000;

struct Recuento {
    qint64 cortos = 0;
    qint64 ausentes = 0;
};

/// The length that the phone gave for a file: member Size of the archived record, absent when the record tells none.
std::optional<qint64> tamanoDeclarado(const QByteArray &registro)
{
    const auto plist = Plist::interpretar(registro);
    return plist ? plist->raiz()["$objects"].en(1)["Size"].entero() : std::nullopt;
}

std::optional<Recuento> contarDefectos(const QString &carpeta)
{
    const auto base = BaseDeDatos::abrir(carpeta + u"/Manifest.db"_s);
    if (!base)
        return {};
    Recuento recuento;
    const bool leida = base->porCadaFila(consultaDeFicheros, [&](const Fila &fila) {
        const auto id = fila.texto(0);
        const QFileInfo info(carpeta + u'/' + id.left(2) + u'/' + id);
        if (!info.exists())
            ++recuento.ausentes;
        else if (info.size() < tamanoDeclarado(fila.datos(1)).value_or(0))
            ++recuento.cortos;
        return true;
    });
    return leida ? std::optional(recuento) : std::nullopt;
}

/// Absent when all is well, otherwise what is wrong. `cifrada`: nothing but the outside was looked at.
std::optional<QString> defectoDe(const QString &carpeta, QStringList &detalles, bool &cifrada)
{
    const auto estado = Plist::leer(carpeta + u"/Status.plist"_s);
    if (!estado || estado->raiz()["SnapshotState"].texto() != u"finished"_s)
        return u"La copia no está marcada como terminada."_s;
    const auto manifiesto = Plist::leer(carpeta + u"/Manifest.plist"_s);
    if (!manifiesto)
        return u"No se puede leer Manifest.plist."_s;
    const auto tamano = QFileInfo(carpeta + u"/Manifest.db"_s).size();
    cifrada = manifiesto->raiz()["IsEncrypted"].logico().value_or(false);
    if (cifrada) {
        const bool cabal = tamano > 0 && tamano % bloqueDeCifrado == 0;
        return cabal ? std::nullopt : std::optional(u"Manifest.db está vacío o cortado."_s);
    }
    const auto recuento = tamano > 0 ? contarDefectos(carpeta) : std::nullopt;
    if (!recuento)
        return u"No se puede leer Manifest.db."_s;
    if (recuento->ausentes > 0)
        detalles << u"Ficheros de la lista que no están en la copia: %1."_s.arg(recuento->ausentes);
    if (recuento->cortos == 0)
        return {};
    // A phone tells the length of a database in use as it was at another moment, so a shorter file alone proves
    // nothing.
    const auto sitio = QStorageInfo(carpeta).bytesAvailable();
    if (sitio >= 0 && sitio < sitioMinimo)
        return u"Ficheros que no están enteros en la copia: %1."_s.arg(recuento->cortos);
    detalles << u"Ficheros más cortos de lo que dice la lista: %1."_s.arg(recuento->cortos);
    return {};
}

} // namespace

ComprobacionDeCopia comprobarCopia(const QString &carpeta)
{
    ComprobacionDeCopia resultado;
    bool cifrada = false;
    const auto defecto = defectoDe(carpeta, resultado.detalles, cifrada);
    using Veredicto = ComprobacionDeCopia::Veredicto;
    resultado.veredicto = defecto ? Veredicto::Rota : cifrada ? Veredicto::SinComprobar : Veredicto::Entera;
    if (defecto) {
        resultado.detalles << *defecto;
        const auto sitio = QStorageInfo(carpeta).bytesAvailable();
        resultado.discoLleno = sitio >= 0 && sitio < sitioMinimo;
    }
    return resultado;
}

} // namespace vellora
