#include "contenido/Base.h"
#include "contenido/Contexto.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace simulado
{

/// AMR narrow band (RFC 4867, section 5): the mark, then a frame of 13 bytes for each 20 ms at 4.75 kbit/s (frame type
/// 0). The coded bits are noise: a legal recording of nobody, made without an encoder, which Debian does not carry.
static QByteArray grabacionAmr(Azar &a, int segundos)
{
    QByteArray datos("#!AMR\n");
    for (int trama = 0; trama < segundos * 50; ++trama)
        datos += '\x04' + a.bytes(11) + static_cast<char>(a.entero(0, 127) << 1);
    return datos;
}

void ponBuzon(Contexto &c)
{
    auto a = c.azar("buzon");
    Base base(c.dominio("HomeDomain", u"Library/Voicemail/voicemail.db"_s));
    base.ejecuta(
        "CREATE TABLE voicemail (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, remote_uid INTEGER, date INTEGER, token "
        "TEXT, "
        "sender TEXT, callback_num TEXT, duration INTEGER, expiration INTEGER, trashed_date INTEGER, flags INTEGER, "
        "receiver TEXT, uuid TEXT, label TEXT);"
        "CREATE TABLE deleted (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, remote_uid INTEGER, date INTEGER);"
        "CREATE TABLE map (ROWID INTEGER PRIMARY KEY, account TEXT, label TEXT);"
        "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));"
        "CREATE INDEX date_index ON voicemail(date);"
        "INSERT INTO _SqliteDatabaseProperties VALUES ('_ClientVersion', '12')");
    Insercion mensaje(
        base, "voicemail",
        "remote_uid, date, token, sender, callback_num, duration, expiration, trashed_date, flags, receiver, uuid");
    const int cuantos = c.segun(3, 9, 20);
    for (int i = 0; i < cuantos; ++i) {
        const auto &p = c.gente[static_cast<size_t>(i % 6)];
        const auto segundos = static_cast<int>(a.entero(3, c.segun(6, 25, 25)));
        // This database counts its dates from 1970, unlike most of the phone's.
        const auto momento = ahoraDelTelefono - a.entero(1, 200) * 80'000;
        const bool oculto = i == 2;
        const auto fila = mensaje.mete(1000 + i, momento, "Complete", oculto ? std::nullopt : std::optional(p.movil()),
                                       oculto ? std::nullopt : std::optional(p.movil()), segundos, momento + 2'592'000,
                                       i == 5 ? apple(momento + 900) : 0.0, i == 5 ? 11 : 3, c.numeroPropio, a.uuid());
        // One whose sound the operator has already withdrawn.
        if (i != 1)
            c.fechas[c.escribe(c.dominio("HomeDomain", u"Library/Voicemail/%1.amr"_s.arg(fila)),
                               grabacionAmr(a, segundos))] = momento;
    }
    c.recoge(base);
}

} // namespace simulado
