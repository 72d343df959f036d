#include "contenido/Base.h"
#include "contenido/Contexto.h"
#include "contenido/Taller.h"

#include <QDateTime>

#include <array>

using namespace Qt::StringLiterals;

namespace simulado
{

static const char *const esquema = R"(
CREATE TABLE ZCLOUDRECORDING (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZFLAGS INTEGER, ZSHAREDFLAGS INTEGER,
    ZFOLDER INTEGER, ZDATE TIMESTAMP, ZDURATION FLOAT, ZEVICTIONDATE TIMESTAMP, ZLOCALDURATION FLOAT, ZCUSTOMLABEL VARCHAR,
    ZCUSTOMLABELFORSORTING VARCHAR, ZENCRYPTEDTITLE VARCHAR, ZPATH VARCHAR, ZUNIQUEID VARCHAR, ZAUDIODIGEST BLOB,
    ZAUDIOFUTURE BLOB);
CREATE TABLE ZFOLDER (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZCOUNTOFRECORDINGS INTEGER, ZRANK INTEGER,
    ZENCRYPTEDNAME VARCHAR, ZUUID VARCHAR);
)";

void ponGrabadora(Contexto &c)
{
    constexpr auto dominio = "AppDomainGroup-group.com.apple.VoiceMemos.shared";
    constexpr std::array titulos{
        "Ensayo del coro", "Idea para la canción", "Reunión AMPA 12/11", "Yayo contando lo del faro",
        "Calle Mayor 14",  "Nota rápida 🎙️", "Clase de inglés"};
    auto a = c.azar("grabadora");
    Taller taller(c);
    Base base(c.dominio(dominio, u"Recordings/CloudRecordings.db"_s));
    base.ejecuta(esquema);
    Insercion grabacion(base, "ZCLOUDRECORDING",
                        "Z_ENT, Z_OPT, ZFLAGS, ZDATE, ZDURATION, ZLOCALDURATION, ZCUSTOMLABEL, "
                        "ZCUSTOMLABELFORSORTING, ZENCRYPTEDTITLE, ZPATH, ZUNIQUEID, ZEVICTIONDATE");
    const int cuantas = c.segun(3, 7, 12);
    for (int i = 0; i < cuantas; ++i) {
        const auto momento = ahoraDelTelefono - (i + 1) * 3'000'000 - a.entero(0, 50'000);
        const auto hora = QDateTime::fromSecsSinceEpoch(momento, Qt::OffsetFromUTC, 3600);
        const auto fichero = hora.toString(u"yyyyMMdd HHmmss"_s) + u'-' + a.hex(8).toUpper() +
                             (i == 1 ? u".qta"_s : u".m4a"_s); // the newest system's own kind
        const auto segundos = a.real(2, c.segun(3.0, 14.0, 14.0));
        const auto ruta = c.dominio(dominio, u"Recordings/"_s + fichero);
        taller.grabacion(ruta, segundos, static_cast<int>(a.entero(180, 500)));
        c.fechas[ruta] = momento;
        const auto titulo = QString::fromUtf8(titulos[static_cast<size_t>(i) % titulos.size()]);
        // The label is a moment, the title stands in clear under the other name; the last one lies in the trash.
        grabacion.mete(4, 1, 0, apple(momento), segundos, segundos, hora.toString(Qt::ISODate), titulo, titulo, fichero,
                       a.uuid(), i + 1 == cuantas ? std::optional(apple(ahoraDelTelefono - 86400)) : std::nullopt);
    }
    // Phones that have come a long way still hold some where older systems kept them.
    const auto antigua = c.media(u"Recordings/20190704 101500.m4a"_s);
    taller.grabacion(antigua, 2.0, 220);
    c.fechas[antigua] = 1'562'228'100;
    ponCoreData(base, a.uuid(), {{"CloudRecording", 4, cuantas}, {"Folder", 5, 0}});
    base.empiezaDiario(true);
    base.ejecuta("UPDATE ZCLOUDRECORDING SET Z_OPT = 2 WHERE Z_PK = 1");
    c.recoge(base);
}

} // namespace simulado
