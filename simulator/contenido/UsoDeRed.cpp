#include "contenido/Base.h"
#include "contenido/Contexto.h"
#include "contenido/ListaDeApps.h"

using namespace Qt::StringLiterals;

namespace simulado
{

static const char *const esquema = R"(
CREATE TABLE ZPROCESS (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZFIRSTTIMESTAMP TIMESTAMP, ZTIMESTAMP TIMESTAMP,
    ZBUNDLENAME VARCHAR, ZPROCNAME VARCHAR);
CREATE TABLE ZLIVEUSAGE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZKIND INTEGER, ZMETADATA INTEGER, ZTAG INTEGER,
    ZHASPROCESS INTEGER, ZBILLCYCLEEND TIMESTAMP, ZTIMESTAMP TIMESTAMP, ZJUMBOIN FLOAT, ZJUMBOOUT FLOAT, ZWIFIIN FLOAT,
    ZWIFIOUT FLOAT, ZWIREDIN FLOAT, ZWIREDOUT FLOAT, ZWWANIN FLOAT, ZWWANOUT FLOAT);
CREATE TABLE ZNETWORKATTACHMENT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZKIND INTEGER,
    ZFIRSTTIMESTAMP TIMESTAMP, ZTIMESTAMP TIMESTAMP, ZIDENTIFIER VARCHAR);
CREATE INDEX ZPROCESS_ZBUNDLENAME_INDEX ON ZPROCESS (ZBUNDLENAME);
CREATE INDEX ZLIVEUSAGE_ZHASPROCESS_INDEX ON ZLIVEUSAGE (ZHASPROCESS);
)";

void ponUsoDeRed(Contexto &c)
{
    auto a = c.azar("red");
    Base base(c.dominio("WirelessDomain", u"Library/Databases/DataUsage.sqlite"_s));
    base.ejecuta(esquema);
    Insercion proceso(base, "ZPROCESS", "Z_ENT, Z_OPT, ZFIRSTTIMESTAMP, ZTIMESTAMP, ZBUNDLENAME, ZPROCNAME");
    Insercion uso(base, "ZLIVEUSAGE",
                  "Z_ENT, Z_OPT, ZKIND, ZTAG, ZHASPROCESS, ZTIMESTAMP, ZWIFIIN, ZWIFIOUT, ZWWANIN, ZWWANOUT");
    qint64 filas = 0;
    auto mete = [&](const std::optional<QString> &paquete, const QString &nombre, qint64 dias) {
        // An hour short of the whole days, so that the day count does not hang on the minute of the reading.
        const auto ultima = apple(ahoraDelTelefono - dias * 86400 - (dias > 0 ? 3600 : 600));
        const auto fila = proceso.mete(3, 1, ultima - 40'000'000, ultima, paquete, nombre);
        for (const int clase : {0, 257})
            uso.mete(2, 1, clase, 1, fila, ultima - (clase ? 0 : 200'000), a.real(1e5, 9e8), a.real(1e4, 9e7),
                     a.real(1e4, 9e7), a.real(1e3, 9e6));
        ++filas;
    };
    for (const auto &app : listaDeApps()) {
        if (app.diasSinRed < 0)
            continue;
        const auto paquete = QString::fromUtf8(app.paquete);
        mete(paquete, paquete.section(u'.', -1), app.diasSinRed);
        // The name server works for each app under a process of its own.
        if (app.diasSinRed < 60)
            mete(paquete, u"mDNSResponder/"_s + paquete, app.diasSinRed);
    }
    mete(std::nullopt, u"apsd"_s, 0);
    mete(std::nullopt, u"mediaserverd"_s, 2);
    mete(u"com.borrada.hace.tiempo"_s, u"tiempo"_s, 500);
    ponCoreData(base, a.uuid(), {{"LiveUsage", 2, filas * 2}, {"Process", 3, filas}});
    c.recoge(base);
}

} // namespace simulado
