#include "contenido/Contexto.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace simulado
{

/// The keychain in clear, which stands outside what a backup holds: a backup carries it only ciphered. Protection
/// classes: 6 to 8 travel with an encrypted backup, 9 to 11 stay on this phone.
void ponClaves(Contexto &c)
{
    QJsonArray todas;
    const auto wifi = [&](const QString &red, const QString &clave, int clase) {
        todas.append(QJsonObject{{u"tabla"_s, u"genp"_s},
                                 {u"clase"_s, clase},
                                 {u"svce"_s, u"AirPort"_s},
                                 {u"acct"_s, red},
                                 {u"agrp"_s, u"apple"_s},
                                 {u"clave"_s, clave}});
    };
    const auto web = [&](const QString &sitio, const QString &usuario, const QString &clave, int clase) {
        todas.append(QJsonObject{{u"tabla"_s, u"inet"_s},
                                 {u"clase"_s, clase},
                                 {u"srvr"_s, sitio},
                                 {u"acct"_s, usuario},
                                 {u"ptcl"_s, u"htps"_s},
                                 {u"agrp"_s, u"com.apple.cfnetwork"_s},
                                 {u"clave"_s, clave}});
    };
    const auto app = [&](const QString &servicio, const QString &cuenta, const QString &clave, int clase) {
        todas.append(QJsonObject{{u"tabla"_s, u"genp"_s},
                                 {u"clase"_s, clase},
                                 {u"svce"_s, servicio},
                                 {u"acct"_s, cuenta},
                                 {u"agrp"_s, u"A1B2C3D4E5."_s + servicio},
                                 {u"clave"_s, clave}});
    };
    wifi(u"Casa de la abuela"_s, u"rosquillas;1957"_s, 7);
    wifi(u"MiFibra-4F2A"_s, u"Xk7p9QmZ"_s, 7);
    wifi(u"Bar El Ñandú 🍻"_s, u"pide una caña"_s, 7);
    wifi(u"Oficina"_s, u"solo-de-este-telefono"_s, 10);
    web(u"correo.ejemplo.es"_s, u"marta@ejemplo.es"_s, u"M@rta;2026"_s, 6);
    web(u"tienda.ejemplo.com"_s, u"marta.ruiz"_s, u"zapatos42"_s, 6);
    web(u"banco.ejemplo.es"_s, u"12345678Z"_s, u"no-sale-de-aqui"_s, 9);
    web(u"foro.ejemplo.org"_s, u""_s, u"ñandú"_s, 8);
    app(u"com.ejemplo.notas"_s, u"marta"_s, u"clave de la app"_s, 7);
    app(u"com.ejemplo.deporte"_s, u"usuario-8871"_s, QString(300, u'k'), 6);
    app(u"com.ejemplo.banca"_s, u"marta"_s, u"tampoco sale"_s, 11);
    c.escribe(c.raiz + u"/llavero.json"_s, QJsonDocument(todas).toJson());
}

} // namespace simulado
