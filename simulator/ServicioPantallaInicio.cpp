#include "Flujo.h"
#include "Plist.h"
#include "Servicios.h"
#include "Telefono.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

QByteArray imagen(const Telefono &telefono, const QString &nombre)
{
    if (nombre.contains(u'/'))
        return {};
    QFile fichero(telefono.carpeta() + "/apps/"_L1 + nombre + ".png"_L1);
    return fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray();
}

/// Pages of icons as the phone lays them out: the dock first, then 24 to a page.
QVariantList disposicion(const Telefono &telefono)
{
    constexpr qsizetype enMuelle = 4;
    constexpr qsizetype enPagina = 24;
    QFile fichero(telefono.carpeta() + "/apps/apps.json"_L1);
    if (!fichero.open(QIODevice::ReadOnly))
        return {};
    QVariantList iconos;
    const QJsonArray apps = QJsonDocument::fromJson(fichero.readAll()).array();
    for (const QJsonValue app : apps)
        iconos.append(QVariantMap{{u"displayIdentifier"_s, app["CFBundleIdentifier"_L1].toString()},
                                  {u"bundleIdentifier"_s, app["CFBundleIdentifier"_L1].toString()},
                                  {u"displayName"_s, app["CFBundleDisplayName"_L1].toString()}});
    QVariantList paginas{QVariant(iconos.mid(0, enMuelle))};
    for (qsizetype i = enMuelle; i < iconos.size(); i += enPagina)
        paginas.append(QVariant(iconos.mid(i, enPagina)));
    return paginas;
}

QVariant responder(Telefono &telefono, const QString &orden, const QVariantMap &peticion)
{
    if (const auto fallo = telefono.averias().tomarFallo(orden))
        return QVariantMap{{u"Error"_s, fallo->error.toString()}};
    if (orden == "getIconPNGData"_L1) {
        const QByteArray png = imagen(telefono, peticion[u"bundleId"_s].toString());
        return png.isEmpty() ? QVariantMap() : QVariantMap{{u"pngData"_s, png}};
    }
    if (orden == "getHomeScreenWallpaperPNGData"_L1) {
        const QByteArray png = imagen(telefono, u"fondo"_s);
        return png.isEmpty() ? QVariantMap() : QVariantMap{{u"pngData"_s, png}};
    }
    if (orden == "getIconState"_L1)
        return disposicion(telefono);
    if (orden == "getInterfaceOrientation"_L1)
        return QVariantMap{{u"interfaceOrientation"_s, 1}};
    return QVariantMap{{u"Error"_s, u"UnknownCommand"_s}};
}

} // namespace

void servirPantallaInicio(Telefono &telefono, Flujo &flujo)
{
    while (const auto mensaje = recibirPlist(flujo)) {
        const QVariantMap peticion = mensaje->toMap();
        const QString orden = peticion[u"command"_s].toString();
        telefono.averias().contarPeticion(u"sb:"_s + orden);
        // Setting the layout has no answer.
        if (orden != "setIconState"_L1 && !enviarPlist(flujo, responder(telefono, orden, peticion), Formato::Binario))
            return;
    }
}

} // namespace simulado
