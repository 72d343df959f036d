#include "contenido/Base.h"
#include "contenido/Contexto.h"

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

const char *const esquema = R"(
CREATE TABLE ZCALLDBPROPERTIES (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTIMER_ALL FLOAT, ZTIMER_INCOMING FLOAT,
    ZTIMER_LAST FLOAT, ZTIMER_LAST_RESET FLOAT, ZTIMER_LIFETIME FLOAT, ZTIMER_OUTGOING FLOAT);
CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZANSWERED INTEGER, ZCALL_CATEGORY INTEGER,
    ZCALLTYPE INTEGER, ZDISCONNECTED_CAUSE INTEGER, ZFACE_TIME_DATA INTEGER, ZFILTERED_OUT_REASON INTEGER,
    ZHANDLE_TYPE INTEGER, ZHASMESSAGE INTEGER, ZJUNKCONFIDENCE INTEGER, ZNUMBER_AVAILABILITY INTEGER, ZORIGINATED INTEGER,
    ZREAD INTEGER, ZVERIFICATIONSTATUS INTEGER, ZDATE TIMESTAMP, ZDURATION FLOAT, ZADDRESS VARCHAR,
    ZBLOCKEDBYEXTENSION VARCHAR, ZDEVICE_ID VARCHAR, ZISO_COUNTRY_CODE VARCHAR, ZJUNKIDENTIFICATIONCATEGORY VARCHAR,
    ZLOCATION VARCHAR, ZNAME VARCHAR, ZSERVICE_PROVIDER VARCHAR, ZUNIQUE_ID VARCHAR, ZLOCALPARTICIPANTUUID BLOB,
    ZOUTGOINGLOCALPARTICIPANTUUID BLOB, ZPARTICIPANTGROUPUUID BLOB);
CREATE TABLE ZHANDLE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTYPE INTEGER, ZNORMALIZEDVALUE VARCHAR,
    ZVALUE VARCHAR);
CREATE TABLE Z_2REMOTEPARTICIPANTHANDLES (Z_2REMOTEPARTICIPANTCALLS INTEGER, Z_4REMOTEPARTICIPANTHANDLES INTEGER,
    PRIMARY KEY (Z_2REMOTEPARTICIPANTCALLS, Z_4REMOTEPARTICIPANTHANDLES));
CREATE INDEX ZCALLRECORD_ZDATE_INDEX ON ZCALLRECORD (ZDATE);
)";

} // namespace

void ponLlamadas(Contexto &c)
{
    auto a = c.azar("llamadas");
    Base base(c.dominio("HomeDomain", u"Library/CallHistoryDB/CallHistory.storedata"_s));
    base.ejecuta(esquema);
    Insercion llamada(
        base, "ZCALLRECORD",
        "Z_ENT, Z_OPT, ZANSWERED, ZCALL_CATEGORY, ZCALLTYPE, ZDISCONNECTED_CAUSE, ZHANDLE_TYPE, ZORIGINATED, "
        "ZREAD, ZDATE, ZDURATION, ZADDRESS, ZISO_COUNTRY_CODE, ZLOCATION, ZNAME, ZSERVICE_PROVIDER, ZUNIQUE_ID");
    auto mete = [&](const std::optional<QString> &quien, qint64 momento, bool mia, double duracion, bool video) {
        const bool cogida = duracion > 0;
        llamada.mete(2, 1, cogida, video ? 2 : 1, video ? 8 : 1, cogida ? 0 : 6, video ? 1 : 2, mia, true,
                     apple(momento), duracion, quien, "es", "<<RecentsNumberLocationNotFound>>", nullptr,
                     video ? "com.apple.FaceTime" : "com.apple.Telephony", a.uuid());
    };
    const int cuantas = c.segun(20, 240, 1000);
    for (int i = 0; i < cuantas; ++i) {
        const auto &p = c.gente[static_cast<size_t>(a.si(60) ? a.entero(0, 11)
                                                             : a.entero(0, static_cast<qint64>(c.gente.size()) - 1))];
        const bool perdida = a.si(22);
        const auto momento = ahoraDelTelefono - static_cast<qint64>(cuantas - i) * 9000 - a.entero(0, 8000);
        mete(p.telefonos.isEmpty() ? p.correos.value(0) : p.movil(), momento, a.si(45), perdida ? 0.0 : a.real(4, 1900),
             a.si(12));
    }
    mete(std::nullopt, ahoraDelTelefono - 50'000, false, 0, false); // number withheld
    mete(u"+34900;123456"_s, ahoraDelTelefono - 40'000, false, 7.9, false);
    ponCoreData(base, a.uuid(), {{"CallDBProperties", 1, 1}, {"CallRecord", 2, cuantas + 3}, {"Handle", 4, 0}});
    base.empiezaDiario(true);
    mete(c.gente[0].movil(), ahoraDelTelefono - 1200, true, 65.4, false);
    c.recoge(base);
}

} // namespace simulado
