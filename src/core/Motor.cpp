#include "core/Motor.h"

#include "core/FicheroAjeno.h"
#include "core/Herramientas.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <cmath>

using namespace Qt::StringLiterals;

namespace vellora::Motor
{

namespace
{

// Where pipx keeps the environment of a program: since 1.3, and before.
const QStringList pythonsDePipx{
    u"/.local/share/pipx/venvs/pymobiledevice3/bin/python3"_s, u"/.local/share/pipx/venvs/pymobiledevice3/bin/python"_s,
    u"/.local/pipx/venvs/pymobiledevice3/bin/python3"_s, u"/.local/pipx/venvs/pymobiledevice3/bin/python"_s};

bool esEjecutable(const QString &ruta)
{
    const QFileInfo info(ruta);
    return info.isFile() && info.isExecutable();
}

std::optional<QJsonObject> objeto(const QByteArray &json)
{
    const auto documento = QJsonDocument::fromJson(json);
    return documento.isObject() ? std::optional(documento.object()) : std::nullopt;
}

std::optional<QJsonObject> objetoDelFichero(const QString &ruta)
{
    constexpr qint64 maximo = 64LL * 1024 * 1024;
    const auto bytes = leerAjeno(ruta, maximo);
    auto leido = bytes ? objeto(*bytes) : std::nullopt;
    if (leido)
        QFile::remove(ruta);
    return leido;
}

} // namespace

std::optional<Lanzamiento> buscarLanzamiento(const std::optional<QString> &recursos, const QString &casa)
{
    if (!recursos)
        return {};
    const auto binario = *recursos + u"/motor/motor"_s;
    if (esEjecutable(binario))
        return Lanzamiento{binario, {}};
    const auto guion = *recursos + u"/motor.py"_s;
    if (!QFileInfo::exists(guion))
        return {};
    for (const auto &python : pythonsDePipx) {
        if (esEjecutable(casa + python))
            return Lanzamiento{casa + python, {guion}};
    }
    return {};
}

const std::optional<Lanzamiento> &lanzamiento()
{
    static const auto valor = buscarLanzamiento(Herramientas::carpetaDeRecursos(), QDir::homePath());
    return valor;
}

bool disponible()
{
    return lanzamiento().has_value();
}

std::optional<qint64> Aviso::entero(QLatin1StringView clave) const
{
    const auto valor = datos.value(clave);
    if (!valor.isDouble())
        return {};
    const double numero = valor.toDouble();
    if (std::abs(numero) >= 0x1p63)
        return {};
    return valor.toInteger(static_cast<qint64>(numero));
}

std::optional<QString> Aviso::texto(QLatin1StringView clave) const
{
    const auto valor = datos.value(clave);
    return valor.isString() ? std::optional(valor.toString()) : std::nullopt;
}

std::optional<Aviso> interpretar(const QString &linea)
{
    if (!linea.startsWith(u'{'))
        return {};
    const auto deLaLinea = objeto(linea.toUtf8());
    if (!deLaLinea)
        return {};
    const auto tipo = deLaLinea->value("tipo"_L1);
    if (!tipo.isString())
        return {};
    const auto ruta = deLaLinea->value("fichero_datos"_L1);
    auto datos = ruta.isString() ? objetoDelFichero(ruta.toString()) : std::nullopt;
    return Aviso{tipo.toString(), datos ? *std::move(datos) : *deLaLinea};
}

} // namespace vellora::Motor
