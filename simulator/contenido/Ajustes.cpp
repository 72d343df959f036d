#include "contenido/Contexto.h"

using namespace Qt::StringLiterals;

namespace simulado
{

static QByteArray plist(const QByteArray &dentro)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\">\n<dict>" +
           dentro + "</dict>\n</plist>\n";
}

static QByteArray texto(const char *clave, const QString &valor)
{
    return QByteArray("<key>") + clave + "</key><string>" + valor.toHtmlEscaped().toUtf8() + "</string>";
}

/// The rest of what a backup holds: settings, books, odd names, a large file.
void ponAjustes(Contexto &c)
{
    auto a = c.azar("ajustes");
    const auto preferencias = u"Library/Preferences/"_s;
    c.escribe(c.dominio("HomeDomain", preferencias + u"com.apple.Preferences.plist"_s),
              plist("<key>AlwaysShowTab</key><true/>"));
    c.escribe(
        c.dominio("HomeDomain", preferencias + u".GlobalPreferences.plist"_s),
        plist(texto("AppleLocale", u"es_ES"_s) + "<key>AppleLanguages</key><array><string>es-ES</string></array>"));
    c.escribe(c.dominio("HomeDomain", preferencias + u"com.apple.mobilephone.plist"_s),
              plist(texto("SubscriberNumber", c.numeroPropio)));
    c.escribe(c.dominio("HomeDomain", u"Library/SpringBoard/IconState.plist"_s),
              plist("<key>buttonBar</key><array><string>com.apple.MobileSMS</string></array>"));
    c.escribe(c.dominio("HomeDomain", u"Library/Keyboard/es-dynamic.lm/vacio"_s), {});
    c.escribe(c.dominio("SystemPreferencesDomain", u"SystemConfiguration/preferences.plist"_s),
              plist(texto("ComputerName", c.opciones.nombre)));
    c.escribe(c.dominio("RootDomain", u"Library/Preferences/com.apple.itunesstored.plist"_s),
              plist("<key>primed</key><true/>"));
    c.escribe(c.dominio("WirelessDomain", u"Library/Preferences/com.apple.commcenter.plist"_s),
              plist(texto("PhoneNumber", c.numeroPropio)));
    c.escribe(c.dominio("ManagedPreferencesDomain", u"mobile/com.apple.purplebuddy.plist"_s),
              plist("<key>SetupDone</key><true/>"));
    c.escribe(c.dominio("InstallDomain", u"Library/MobileInstallation/UninstalledApplications.plist"_s),
              plist("<key>com.borrada.hace.tiempo</key><date>2025-07-01T10:00:00Z</date>"));
    // Legal names that have tripped more than one program: accents, an emoji, blanks at the ends, a very long one, case
    // pairs.
    const QByteArray poco("contenido\n");
    for (const auto &nombre :
         {u"Facturas/año 2026/niño & niña (copia).txt"_s, u"Fiesta 🎉/ lista .txt"_s, u"Mayúsculas/Nota.txt"_s,
          u"Mayúsculas/nota.TXT"_s, u"sin extensión"_s, u"…/..puntos..txt"_s, QString(120, u'ñ') + u".txt"_s})
        c.escribe(
            c.dominio("AppDomainGroup-group.com.apple.FileProvider.LocalStorage", u"File Provider Storage/"_s + nombre),
            poco);
    c.escribe(c.dominio("AppDomainGroup-group.com.apple.FileProvider.LocalStorage",
                        u"File Provider Storage/Descargas/mapa de la sierra.bin"_s),
              a.bytes(2'300'000));
    c.escribe(c.media(u"Books/iBooksData2.plist"_s), plist("<key>Books</key><array/>"));
    c.escribe(c.media(u"iTunes_Control/iTunes/iTunesPrefs"_s), a.bytes(256));
    c.escribe(c.media(u"iTunes_Control/iTunes/iTunesPrefs.plist"_s), plist("<key>iPodPrefs</key><data>AAAA</data>"));
    c.escribe(c.media(u"iTunes_Control/iTunes/IC-Info.sidv"_s), a.bytes(64));
    c.escribe(c.media(u"Downloads/downloads.28.sqlitedb"_s), {});
}

} // namespace simulado
