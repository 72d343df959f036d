#include "Flujo.h"
#include "Servicios.h"
#include "Telefono.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace simulado
{

void servirMudanzaDeFallos(Telefono &, Flujo &flujo)
{
    // The crash mover says one word when the reports are in place, and then waits for the client to leave.
    char nada = 0;
    if (flujo.escribir(QByteArray("ping\0", 5)))
        flujo.leer(&nada, 1);
}

void servirInformesDeFallos(Telefono &telefono, Flujo &flujo)
{
    const QString carpeta = telefono.carpeta() + "/informes"_L1;
    QDir().mkpath(carpeta);
    servirAfcEn(telefono, flujo, carpeta);
}

void servirCasaDeApps(Telefono &telefono, Flujo &flujo)
{
    const auto mensaje = recibirPlist(flujo);
    if (!mensaje)
        return;
    const QVariantMap peticion = mensaje->toMap();
    const QString identificador = peticion[u"Identifier"_s].toString();
    telefono.averias().contarPeticion(peticion[u"Command"_s].toString());
    QFile fichero(telefono.carpeta() + "/apps/apps.json"_L1);
    bool instalada = false;
    if (fichero.open(QIODevice::ReadOnly)) {
        const QJsonArray apps = QJsonDocument::fromJson(fichero.readAll()).array();
        instalada = std::any_of(apps.begin(), apps.end(), [&](const QJsonValue &app) {
            return app["CFBundleIdentifier"_L1].toString() == identificador;
        });
    }
    if (!instalada || identificador.contains(u'/')) {
        enviarPlist(flujo, QVariantMap{{u"Error"_s, u"ApplicationLookupFailed"_s}});
        return;
    }
    const QString carpeta = telefono.carpeta() + "/documentos/"_L1 + identificador;
    QDir().mkpath(carpeta + "/Documents"_L1);
    if (enviarPlist(flujo, QVariantMap{{u"Status"_s, u"Complete"_s}}))
        servirAfcEn(telefono, flujo, carpeta);
}

void servirPerfiles(Telefono &telefono, Flujo &flujo)
{
    while (const auto mensaje = recibirPlist(flujo)) {
        const QString tipo = mensaje->toMap()[u"RequestType"_s].toString();
        telefono.averias().contarPeticion(u"mci:"_s + tipo);
        QVariantMap respuesta{{u"Status"_s, u"Acknowledged"_s}};
        if (tipo == "GetProfileList"_L1)
            respuesta.insert({{u"OrderedIdentifiers"_s, QVariantList()},
                              {u"ProfileManifest"_s, QVariantMap()},
                              {u"ProfileMetadata"_s, QVariantMap()}});
        if (!enviarPlist(flujo, respuesta))
            return;
    }
}

void servirProvisiones(Telefono &telefono, Flujo &flujo)
{
    while (const auto mensaje = recibirPlist(flujo)) {
        telefono.averias().contarPeticion(u"mis:"_s + mensaje->toMap()[u"MessageType"_s].toString());
        const QVariantMap respuesta{
            {u"MessageType"_s, u"Response"_s}, {u"Status"_s, 0}, {u"Payload"_s, QVariantList()}};
        if (!enviarPlist(flujo, respuesta))
            return;
    }
}

void servirLatido(Telefono &, Flujo &flujo)
{
    constexpr int intervalo = 10;
    do {
        if (!enviarPlist(flujo, QVariantMap{{u"Command"_s, u"Marco"_s}, {u"Interval"_s, intervalo}}))
            return;
    } while (recibirPlist(flujo) && flujo.dormir(intervalo * 1000));
}

} // namespace simulado
