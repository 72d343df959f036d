#include "Flujo.h"
#include "Plist.h"
#include "Servicios.h"
#include "Telefono.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

QString rutaDeApps(const Telefono &telefono)
{
    return telefono.carpeta() + "/apps/apps.json"_L1;
}

QJsonArray leerApps(const Telefono &telefono)
{
    QFile fichero(rutaDeApps(telefono));
    return fichero.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(fichero.readAll()).array() : QJsonArray();
}

/// The apps that a request asks for, each with the attributes it wants.
QVariantList elegir(const Telefono &telefono, const QVariantMap &opciones)
{
    const QString tipo = opciones.value(u"ApplicationType"_s, u"Any"_s).toString();
    const QVariantList atributos = opciones[u"ReturnAttributes"_s].toList();
    const QVariantList pedidas = opciones[u"BundleIDs"_s].toList();
    QVariantList elegidas;
    const QJsonArray todas = leerApps(telefono);
    for (const QJsonValue app : todas) {
        const QVariantMap entera = desdeJson(app).toMap();
        if (tipo != "Any"_L1 && entera[u"ApplicationType"_s].toString() != tipo)
            continue;
        if (!pedidas.isEmpty() && !pedidas.contains(entera[u"CFBundleIdentifier"_s]))
            continue;
        QVariantMap parte;
        for (const QVariant &atributo : atributos) {
            const auto it = entera.constFind(atributo.toString());
            if (it != entera.cend())
                parte.insert(it.key(), *it);
        }
        elegidas.append(atributos.isEmpty() ? entera : parte);
    }
    return elegidas;
}

bool recorrer(Telefono &telefono, Flujo &flujo, const QVariantMap &opciones)
{
    constexpr qsizetype pagina = 10;
    const QVariantList elegidas = elegir(telefono, opciones);
    for (qsizetype i = 0; i < elegidas.size(); i += pagina) {
        const QVariantList lista = elegidas.mid(i, pagina);
        const QVariantMap mensaje{{u"Status"_s, u"BrowsingApplications"_s},
                                  {u"CurrentIndex"_s, i},
                                  {u"CurrentAmount"_s, lista.size()},
                                  {u"CurrentList"_s, lista},
                                  {u"Total"_s, elegidas.size()}};
        if (!enviarPlist(flujo, mensaje))
            return false;
    }
    return enviarPlist(flujo, QVariantMap{{u"Status"_s, u"Complete"_s}});
}

bool consultar(Telefono &telefono, Flujo &flujo, QVariantMap opciones)
{
    // The identifier is the key of the answer, so it is read even when it was not asked for.
    QVariantList atributos = opciones[u"ReturnAttributes"_s].toList();
    if (!atributos.isEmpty() && !atributos.contains(u"CFBundleIdentifier"_s))
        opciones.insert(u"ReturnAttributes"_s, atributos << u"CFBundleIdentifier"_s);
    QVariantMap resultado;
    const QVariantList elegidas = elegir(telefono, opciones);
    for (const QVariant &app : elegidas)
        resultado.insert(app.toMap()[u"CFBundleIdentifier"_s].toString(), app);
    return enviarPlist(flujo, QVariantMap{{u"Status"_s, u"Complete"_s}, {u"LookupResult"_s, resultado}});
}

bool quitar(Telefono &telefono, Flujo &flujo, const QString &identificador)
{
    QJsonArray apps = leerApps(telefono);
    const auto it = std::find_if(apps.begin(), apps.end(), [&](const QJsonValue &app) {
        return app["CFBundleIdentifier"_L1].toString() == identificador;
    });
    if (it != apps.end() && (*it)["ApplicationType"_L1].toString() == "System"_L1)
        return enviarPlist(flujo, QVariantMap{{u"Error"_s, u"ApplicationVerificationFailed"_s},
                                              {u"ErrorDescription"_s, u"Cannot uninstall a system application"_s}});
    const QList<std::pair<QString, int>> pasos{{u"RemovingApplication"_s, 30}, {u"GeneratingApplicationMap"_s, 90}};
    for (const auto &[paso, porCiento] : pasos) {
        if (!enviarPlist(flujo, QVariantMap{{u"Status"_s, paso}, {u"PercentComplete"_s, porCiento}}))
            return false;
    }
    // Uninstalling what is not there succeeds on a phone too.
    if (it != apps.end()) {
        const qint64 ocupaba = (*it)["StaticDiskUsage"_L1].toInteger() + (*it)["DynamicDiskUsage"_L1].toInteger();
        apps.erase(it);
        QSaveFile fichero(rutaDeApps(telefono));
        if (!fichero.open(QIODevice::WriteOnly) || fichero.write(QJsonDocument(apps).toJson()) < 0 || !fichero.commit())
            return enviarPlist(flujo, QVariantMap{{u"Error"_s, u"APIInternalError"_s}});
        telefono.ocuparEspacio(-ocupaba);
        telefono.averias().contarEvento(u"desinstalada "_s + identificador);
    }
    return enviarPlist(flujo, QVariantMap{{u"Status"_s, u"Complete"_s}});
}

} // namespace

void servirApps(Telefono &telefono, Flujo &flujo)
{
    while (const auto mensaje = recibirPlist(flujo)) {
        const QVariantMap peticion = mensaje->toMap();
        const QString orden = peticion[u"Command"_s].toString();
        const QVariantMap opciones = peticion[u"ClientOptions"_s].toMap();
        telefono.averias().contarPeticion(u"apps:"_s + orden);
        bool sigue = false;
        if (const auto fallo = telefono.averias().tomarFallo(orden))
            sigue = enviarPlist(
                flujo, QVariantMap{{u"Error"_s, fallo->error.toString()}, {u"ErrorDescription"_s, fallo->texto}});
        else if (orden == "Browse"_L1)
            sigue = recorrer(telefono, flujo, opciones);
        else if (orden == "Lookup"_L1)
            sigue = consultar(telefono, flujo, opciones);
        else if (orden == "Uninstall"_L1)
            sigue = quitar(telefono, flujo, peticion[u"ApplicationIdentifier"_s].toString());
        else if (orden == "CheckCapabilitiesMatch"_L1)
            sigue = enviarPlist(flujo, QVariantMap{{u"Status"_s, u"Complete"_s}, {u"LookupResult"_s, true}});
        else
            sigue = enviarPlist(flujo, QVariantMap{{u"Error"_s, u"UnknownCommand"_s}});
        if (!sigue)
            return;
    }
}

} // namespace simulado
