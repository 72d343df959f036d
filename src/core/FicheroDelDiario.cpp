#include "core/FicheroDelDiario.h"

#include "core/FicheroAjeno.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QSet>
#include <QTimeZone>

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

using Estado = Actividad::Estado;

constexpr std::array estados{std::pair{Estado::EnMarcha, "enMarcha"}, std::pair{Estado::Bien, "bien"},
                             std::pair{Estado::Mal, "mal"}, std::pair{Estado::Cancelada, "cancelada"}};

const QDateTime &origen()
{
    static const QDateTime momento(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc());
    return momento;
}

double segundosDe(const QDateTime &momento)
{
    return static_cast<double>(origen().msecsTo(momento)) / 1000.0;
}

std::optional<QDateTime> momentoDe(const QJsonValue &segundos)
{
    if (!segundos.isDouble())
        return {};
    return origen().addMSecs(std::llround(segundos.toDouble() * 1000.0));
}

std::optional<Estado> estadoDe(const QString &texto)
{
    for (const auto &[estado, nombre] : estados) {
        if (texto == QLatin1String(nombre))
            return estado;
    }
    return {};
}

std::optional<Actividad> actividadDe(const QJsonObject &objeto)
{
    const auto texto = [&](const char *clave) -> std::optional<QString> {
        const auto valor = objeto.value(QLatin1String(clave));
        return valor.isString() ? std::optional(valor.toString()) : std::nullopt;
    };
    const auto id = QUuid::fromString(texto("id").value_or(QString()));
    const auto titulo = texto("titulo");
    const auto detalle = texto("detalle");
    const auto estado = estadoDe(texto("estado").value_or(QString()));
    const auto empezo = momentoDe(objeto.value("empezo"_L1));
    const auto termino = objeto.value("termino"_L1);
    const auto carpeta = objeto.value("carpeta"_L1);
    if (id.isNull() || !titulo || !detalle || !estado || !empezo)
        return {};
    if (!(termino.isUndefined() || termino.isNull() || termino.isDouble()))
        return {};
    if (!(carpeta.isUndefined() || carpeta.isNull() || carpeta.isString()))
        return {};
    return Actividad{id, *titulo, *detalle, *estado, *empezo, momentoDe(termino), texto("carpeta")};
}

/// One value as JSON text. The object is put together by hand because Qt's own would sort its keys.
QByteArray enJson(const QJsonValue &valor)
{
    const auto lista = QJsonDocument(QJsonArray{valor}).toJson(QJsonDocument::Compact);
    return lista.mid(1, lista.size() - 2);
}

QByteArray enJson(const Actividad &una)
{
    QByteArray objeto = "{\"id\":" + enJson(una.id.toString(QUuid::WithoutBraces).toUpper());
    objeto += ",\"titulo\":" + enJson(una.titulo) + ",\"detalle\":" + enJson(una.detalle);
    objeto += ",\"estado\":" + enJson(textoDeEstado(una.estado)) + ",\"empezo\":" + enJson(segundosDe(una.empezo));
    if (una.termino)
        objeto += ",\"termino\":" + enJson(segundosDe(*una.termino));
    if (una.carpeta)
        objeto += ",\"carpeta\":" + enJson(*una.carpeta);
    return objeto + '}';
}

} // namespace

QString textoDeEstado(Estado estado)
{
    for (const auto &[valor, nombre] : estados) {
        if (valor == estado)
            return QLatin1String(nombre);
    }
    return {};
}

QList<Actividad> leerDiario(const QString &fichero, bool *ilegible)
{
    constexpr qint64 maximo = 16LL * 1024 * 1024;
    const QFileInfo info(fichero);
    const auto bytes = leerAjeno(fichero, maximo);
    const auto documento = QJsonDocument::fromJson(bytes.value_or(QByteArray()));
    if (ilegible != nullptr)
        *ilegible = (info.exists() || info.isSymLink()) && !documento.isArray();
    QList<Actividad> actividades;
    QSet<QUuid> vistas;
    const auto lista = documento.array();
    for (const auto &valor : lista) {
        const auto una = actividadDe(valor.toObject());
        if (!una || vistas.contains(una->id))
            continue;
        vistas << una->id;
        actividades << *una;
    }
    return actividades;
}

QString apartarDiario(const QString &fichero)
{
    bool ilegible = false;
    leerDiario(fichero, &ilegible);
    if (!ilegible)
        return {};
    const auto ahora = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH.mm.ss"_s);
    for (int vez = 1; vez < 100; ++vez) {
        auto nombre = fichero + u".apartado "_s + ahora + (vez > 1 ? u" (%1)"_s.arg(vez) : QString());
        const auto a = QFile::encodeName(nombre);
        if (renameat2(AT_FDCWD, QFile::encodeName(fichero).constData(), AT_FDCWD, a.constData(), RENAME_NOREPLACE) == 0)
            return nombre;
        if (errno != EEXIST)
            break;
    }
    return {};
}

QByteArray diarioEnJson(const QList<Actividad> &actividades)
{
    QByteArrayList objetos;
    for (const auto &una : actividades)
        objetos << enJson(una);
    return '[' + objetos.join(',') + ']';
}

void escribirDiario(const QString &fichero, const QList<Actividad> &actividades)
{
    QDir().mkpath(QFileInfo(fichero).path());
    QSaveFile archivo(fichero);
    if (!archivo.open(QIODevice::WriteOnly))
        return;
    archivo.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    archivo.write(diarioEnJson(actividades));
    (void)archivo.commit(); // a failure leaves the old file, and the job must not notice
}

} // namespace vellora
