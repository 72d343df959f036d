#include "contenido/Contexto.h"
#include "contenido/ListaDeApps.h"
#include "contenido/Pintor.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

QString clavePermiso(const QString &corto)
{
    static const QHash<QString, QString> propias{{u"PhotoLibraryAdd"_s, u"NSPhotoLibraryAddUsageDescription"_s},
                                                 {u"Location"_s, u"NSLocationWhenInUseUsageDescription"_s},
                                                 {u"Health"_s, u"NSHealthShareUsageDescription"_s},
                                                 {u"HealthWrite"_s, u"NSHealthUpdateUsageDescription"_s},
                                                 {u"Bluetooth"_s, u"NSBluetoothAlwaysUsageDescription"_s},
                                                 {u"Tracking"_s, u"NSUserTrackingUsageDescription"_s},
                                                 {u"NFC"_s, u"NFCReaderUsageDescription"_s}};
    return propias.value(corto, u"NS"_s + corto + u"UsageDescription"_s);
}

QJsonObject datos(const QByteArray &bytes)
{
    return {{u"$datos"_s, QString::fromLatin1(bytes.toBase64())}};
}

QJsonObject ficha(const AppInstalada &app, Azar &a)
{
    const auto paquete = QString::fromUtf8(app.paquete), nombre = QString::fromUtf8(app.nombre);
    const auto ejecutable = paquete.section(u'.', -1);
    QJsonObject o{{u"CFBundleIdentifier"_s, paquete},
                  {u"CFBundleName"_s, nombre.isEmpty() ? ejecutable : nombre.section(u' ', 0, 0)},
                  {u"CFBundleExecutable"_s, ejecutable},
                  {u"CFBundlePackageType"_s, u"APPL"_s},
                  {u"CFBundleInfoDictionaryVersion"_s, u"6.0"_s},
                  {u"CFBundleShortVersionString"_s, QString::fromUtf8(app.version)},
                  {u"CFBundleVersion"_s, QString::number(a.entero(100, 99'999))},
                  {u"ApplicationType"_s, app.delSistema ? u"System"_s : u"User"_s},
                  {u"StaticDiskUsage"_s, app.megas * 1'000'000LL + a.entero(0, 999'999)},
                  {u"DynamicDiskUsage"_s, app.megasDeDatos * 1'000'000LL + a.entero(0, 999'999)},
                  {u"MinimumOSVersion"_s, u"15.0"_s},
                  {u"UIDeviceFamily"_s, QJsonArray{1, 2}},
                  {u"DTPlatformName"_s, u"iphoneos"_s},
                  {u"IsUpgradeable"_s, true},
                  {u"SignerIdentity"_s, app.delSistema ? u"Apple iPhone OS Application Signing"_s
                                                       : u"Apple iPhone OS Application Signing"_s}};
    if (!nombre.isEmpty())
        o[u"CFBundleDisplayName"_s] = nombre;
    o[u"Path"_s] = app.delSistema ? u"/Applications/%1.app"_s.arg(ejecutable)
                                  : u"/private/var/containers/Bundle/Application/%1/%2.app"_s.arg(a.uuid(), ejecutable);
    if (!app.delSistema)
        o[u"Container"_s] = u"/private/var/mobile/Containers/Data/Application/"_s + a.uuid();
    const auto equipo = a.hex(10).toUpper();
    o[u"Entitlements"_s] = QJsonObject{{u"application-identifier"_s, equipo + u'.' + paquete},
                                       {u"com.apple.developer.team-identifier"_s, equipo},
                                       {u"aps-environment"_s, u"production"_s},
                                       {u"keychain-access-groups"_s, QJsonArray{equipo + u'.' + paquete}}};
    for (const auto &permiso : QString::fromUtf8(app.permisos).split(u' ', Qt::SkipEmptyParts))
        o[clavePermiso(permiso)] = u"%1 lo necesita para funcionar mejor."_s.arg(nombre);
    if (app.rastreadores > 0) {
        QJsonArray servidores;
        for (int i = 1; i <= app.rastreadores; ++i)
            servidores << u"anuncios%1.rastro.example"_s.arg(i);
        o[u"NSPrivacyTrackingDomains"_s] = servidores;
        QJsonArray redes;
        for (int i = 0; i < app.rastreadores; ++i)
            redes << QJsonObject{{u"SKAdNetworkIdentifier"_s, a.hex(10) + u".skadnetwork"_s}};
        o[u"SKAdNetworkItems"_s] = redes;
    }
    if (app.comprada) {
        o[u"ApplicationSINF"_s] = datos(a.bytes(256));
        o[u"iTunesMetadata"_s] = datos(
            u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist "
            u"version=\"1.0\"><dict><key>bundleShortVersionString</key><string>"
            "%1</string><key>itemName</key><string>%2</string><key>softwareVersionBundleId</key><string>%3</string>"
            "<key>itemId</key><integer>%4</integer></dict></plist>\n"_s
                .arg(QString::fromUtf8(app.version), nombre, paquete)
                .arg(a.entero(300'000'000, 1'600'000'000))
                .toUtf8());
    }
    return o;
}

} // namespace

void ponAplicaciones(Contexto &c)
{
    auto a = c.azar("apps");
    QJsonArray lista;
    for (const auto &app : listaDeApps()) {
        lista << ficha(app, a);
        c.escribe(c.raiz + u"/apps/"_s + QString::fromUtf8(app.paquete) + u".png"_s, comoPng(pintaIcono(app.dibujo)));
        if (app.delSistema)
            continue;
        const auto dominio = QByteArray("AppDomain-") + app.paquete;
        if (c.conHerramientas() || app.dibujo % 3 == 0)
            c.escribe(
                c.dominio(dominio.constData(), u"Library/Preferences/%1.plist"_s.arg(QString::fromUtf8(app.paquete))),
                QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist "
                           "version=\"1.0\"><dict><key>aperturas</key><integer>") +
                    QByteArray::number(a.entero(1, 900)) + "</integer></dict></plist>\n");
        if (c.conHerramientas())
            c.escribe(c.dominio(dominio.constData(), u"Documents/datos.bin"_s), a.bytes(a.entero(200, 30'000)));
    }
    c.escribe(c.raiz + u"/apps/apps.json"_s, QJsonDocument(lista).toJson());
}

} // namespace simulado
