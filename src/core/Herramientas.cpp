#include "core/Herramientas.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vellora::Herramientas
{

std::optional<QString> carpetaDeRecursos()
{
    const QDir recursos(QCoreApplication::applicationDirPath() + u"/../Resources"_s);
    return recursos.exists() ? std::optional(recursos.canonicalPath()) : std::nullopt;
}

QStringList rutasDeBusqueda(const std::optional<QString> &recursos, const QString &casa)
{
    QStringList rutas;
    if (recursos)
        rutas << *recursos + u"/motor/bin"_s << *recursos + u"/motor"_s;
    rutas << u"/usr/local/bin"_s << casa + u"/.local/bin"_s << u"/usr/bin"_s;
    return rutas;
}

const QStringList &rutasBusqueda()
{
    static const QStringList rutas = rutasDeBusqueda(carpetaDeRecursos(), QDir::homePath());
    return rutas;
}

std::optional<QString> localizar(const QString &nombre, const QStringList &rutas)
{
    for (const auto &carpeta : rutas) {
        const QFileInfo info(carpeta + u'/' + nombre);
        if (info.isFile() && info.isExecutable())
            return info.filePath();
    }
    return {};
}

const std::optional<QString> &ideviceID()
{
    static const auto ruta = localizar(u"idevice_id"_s);
    return ruta;
}

const std::optional<QString> &ideviceInfo()
{
    static const auto ruta = localizar(u"ideviceinfo"_s);
    return ruta;
}

const std::optional<QString> &idevicebackup2()
{
    static const auto ruta = localizar(u"idevicebackup2"_s);
    return ruta;
}

const std::optional<QString> &pymobiledevice()
{
    static const auto ruta = localizar(u"pymobiledevice3"_s);
    return ruta;
}

QStringList queFalta()
{
    QStringList falta;
    if (!ideviceID() || !ideviceInfo() || !idevicebackup2())
        falta << u"libimobiledevice"_s;
    if (!pymobiledevice())
        falta << u"pymobiledevice3"_s;
    return falta;
}

bool todoListo()
{
    return queFalta().isEmpty();
}

} // namespace vellora::Herramientas
