#include "engine/Avisos.h"

#include "core/CarpetaPrivada.h"

#include <QJsonDocument>
#include <QTemporaryFile>

#include <cerrno>
#include <chrono>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr qint64 entreDosProgresos = 100; // milliseconds

QByteArray enJson(const QJsonObject &objeto)
{
    return QJsonDocument(objeto).toJson(QJsonDocument::Compact);
}

/// Path of a new file that holds the object, or an empty text.
QString enFichero(const QJsonObject &datos)
{
    const auto carpeta = CarpetaPrivada::deLaSesion();
    // Under a name that nobody has, for the owner alone.
    QTemporaryFile fichero(carpeta + u"/aviso-XXXXXX.json"_s);
    if (carpeta.isEmpty() || !fichero.open() || fichero.write(enJson(datos)) < 0 || !fichero.flush() ||
        fsync(fichero.handle()) != 0)
        return {};
    fichero.setAutoRemove(false);
    return fichero.fileName();
}

} // namespace

bool Avisos::avisar(const QString &tipo, QJsonObject datos)
{
    datos["tipo"_L1] = tipo;
    auto renglon = enJson(datos) + '\n';
    if (renglon.size() > largoMaximo) {
        const auto fichero = enFichero(datos);
        if (fichero.isEmpty())
            return false;
        renglon = enJson({{u"tipo"_s, tipo}, {u"fichero_datos"_s, fichero}}) + '\n';
    }
    escribir(renglon);
    return true;
}

void Avisos::total(qint64 unidades)
{
    deTotal = unidades;
    avisar(u"total"_s, {{u"n"_s, unidades}});
}

void Avisos::progreso(qint64 hechos, const QJsonObject &mas)
{
    using namespace std::chrono;
    const auto ahora = duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
    if (ahora - ultimoProgreso < entreDosProgresos && (hechos < deTotal || deTotal == 0))
        return;
    ultimoProgreso = ahora;
    auto datos = mas;
    datos["hechos"_L1] = hechos;
    avisar(u"progreso"_s, datos);
}

int Avisos::error(const QString &motivo)
{
    // Held under the length of a notice: a name inside it may be of any length.
    avisar(u"error"_s, {{u"motivo"_s, motivo.left(500)}});
    return 1;
}

void Avisos::linea(const QString &texto)
{
    auto renglon = texto.left(1000).simplified();
    if (renglon.startsWith(u'{'))
        renglon.prepend(u"· "_s);
    escribir(renglon.toUtf8() + '\n');
}

void Avisos::escribir(const QByteArray &renglon)
{
    const char *desde = renglon.constData();
    auto quedan = static_cast<size_t>(renglon.size());
    while (quedan > 0) {
        const auto escrito = write(descriptor, desde, quedan);
        if (escrito < 0 && errno == EINTR)
            continue;
        if (escrito < 0)
            return; // the reader has gone; the command ends as it must
        desde += escrito;
        quedan -= static_cast<size_t>(escrito);
    }
}

} // namespace vellora::motor
