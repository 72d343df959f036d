#include "backups/Comprobante.h"

#include "core/Plist.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace vellora::Comprobante
{

namespace
{

using Veredicto = ComprobacionDeCopia::Veredicto;

constexpr qint64 tamanoMaximo = 1 << 16;
// FAT keeps every second one only.
constexpr qint64 segundosDeHolgura = 2;

QString enPalabra(Veredicto veredicto)
{
    return veredicto == Veredicto::Entera ? u"entera"_s : u"sin comprobar"_s;
}

QByteArray leerPequeno(const QString &ruta)
{
    QFile fichero(ruta);
    if (!fichero.open(QIODevice::ReadOnly) || fichero.size() > tamanoMaximo)
        return {};
    return fichero.read(tamanoMaximo);
}

QJsonObject fichaDe(const QString &ruta)
{
    const QFileInfo info(ruta);
    return {{u"bytes"_s, info.size()}, {u"fecha"_s, info.lastModified().toSecsSinceEpoch()}};
}

bool mismaFicha(const QJsonObject &una, const QJsonObject &otra)
{
    const auto fecha = [](const QJsonObject &ficha) {
        return ficha[u"fecha"_s].toInteger();
    };
    return una[u"bytes"_s].toInteger(-1) == otra[u"bytes"_s].toInteger(-2) &&
           std::abs(fecha(una) - fecha(otra)) <= segundosDeHolgura;
}

/// What the note is bound to; empty when the backup has no status.
QJsonObject estadoDe(const QString &copia)
{
    const auto estado = leerPequeno(copia + u"/Status.plist"_s);
    if (estado.isEmpty())
        return {};
    return {{u"udid"_s, QFileInfo(copia).fileName()},
            {u"lista"_s, fichaDe(copia + u"/Manifest.db"_s)},
            {u"descripcion"_s, fichaDe(copia + u"/Manifest.plist"_s)},
            {u"estado"_s, QString::fromLatin1(QCryptographicHash::hash(estado, QCryptographicHash::Sha256).toHex())}};
}

/// Whether the backup says itself that it is of another phone.
bool esDeOtro(const QString &copia)
{
    const auto info = Plist::leer(copia + u"/Info.plist"_s);
    const auto suyo = info ? info->raiz()["Target Identifier"].texto() : std::nullopt;
    return suyo && suyo->compare(QFileInfo(copia).fileName(), Qt::CaseInsensitive) != 0;
}

} // namespace

const QString &fichero()
{
    static const auto nombre = u".vellora-comprobada"_s;
    return nombre;
}

std::optional<Veredicto> leer(const QString &copia)
{
    const auto nota = QJsonDocument::fromJson(leerPequeno(copia + u'/' + fichero())).object();
    if (nota.isEmpty())
        return {};
    const auto ahora = estadoDe(copia);
    const bool vale = nota[u"udid"_s] == ahora[u"udid"_s] && nota[u"estado"_s] == ahora[u"estado"_s] &&
                      nota[u"estado"_s].isString() &&
                      mismaFicha(nota[u"lista"_s].toObject(), ahora[u"lista"_s].toObject()) &&
                      mismaFicha(nota[u"descripcion"_s].toObject(), ahora[u"descripcion"_s].toObject());
    if (!vale)
        return {};
    return nota[u"veredicto"_s] == enPalabra(Veredicto::Entera) ? Veredicto::Entera : Veredicto::SinComprobar;
}

bool escribir(const QString &copia, Veredicto veredicto)
{
    auto nota = estadoDe(copia);
    if (nota.isEmpty() || veredicto == Veredicto::Rota)
        return false;
    nota[u"veredicto"_s] = enPalabra(veredicto);
    QSaveFile salida(copia + u'/' + fichero());
    salida.setDirectWriteFallback(false);
    const auto bytes = QJsonDocument(nota).toJson(QJsonDocument::Compact);
    return salida.open(QIODevice::WriteOnly) && salida.write(bytes) == bytes.size() && salida.commit();
}

ComprobacionDeCopia comprobarYApuntar(const QString &copia)
{
    auto comprobacion = comprobarCopia(QFileInfo(copia).fileName(), copia);
    if (!comprobacion.rota() && esDeOtro(copia)) {
        comprobacion.veredicto = Veredicto::Rota;
        comprobacion.detalles << u"La copia es de otro iPhone."_s;
    }
    if (comprobacion.rota())
        QFile::remove(copia + u'/' + fichero());
    else
        escribir(copia, comprobacion.veredicto);
    return comprobacion;
}

} // namespace vellora::Comprobante
