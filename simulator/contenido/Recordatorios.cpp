#include "contenido/Base.h"
#include "contenido/Contexto.h"

#include <array>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

/// The columns that are told of these stores since iOS 16, one store for each account.
const char *const esquema = R"(
CREATE TABLE ZREMCDREMINDER (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZALLDAY INTEGER, ZCOMPLETED INTEGER,
    ZFLAGGED INTEGER, ZMARKEDFORDELETION INTEGER, ZPRIORITY INTEGER, ZACCOUNT INTEGER, ZLIST INTEGER, ZPARENTREMINDER INTEGER,
    ZCOMPLETIONDATE TIMESTAMP, ZCREATIONDATE TIMESTAMP, ZDISPLAYDATEDATE TIMESTAMP, ZDUEDATE TIMESTAMP,
    ZLASTMODIFIEDDATE TIMESTAMP, ZSTARTDATE TIMESTAMP, ZCKIDENTIFIER VARCHAR, ZCKPARENTREMINDERIDENTIFIER VARCHAR,
    ZICSURL VARCHAR, ZNOTES VARCHAR, ZTIMEZONE VARCHAR, ZTITLE VARCHAR, ZIDENTIFIER BLOB, ZNOTESDOCUMENT BLOB,
    ZTITLEDOCUMENT BLOB, ZDUEDATEDELTAALERTSDATA BLOB);
CREATE TABLE ZREMCDBASELIST (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZISGROUP INTEGER,
    ZMARKEDFORDELETION INTEGER, ZACCOUNT INTEGER, ZPARENTLIST INTEGER, ZNAME VARCHAR, ZCKIDENTIFIER VARCHAR,
    ZCOLOR BLOB, ZIDENTIFIER BLOB);
CREATE TABLE ZREMCDOBJECT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZMARKEDFORDELETION INTEGER,
    ZREMINDER INTEGER, ZREMINDER2 INTEGER, ZREMINDER3 INTEGER, ZREMINDER4 INTEGER, ZFREQUENCY INTEGER, ZINTERVAL INTEGER,
    ZNAME VARCHAR, ZNAME1 VARCHAR, ZTITLE VARCHAR, ZTITLE1 VARCHAR, ZIDENTIFIER BLOB);
)";

constexpr int entRecordatorio = 33;
constexpr int entLista = 4;
constexpr std::array tareas{"Renovar el DNI",      "Pagar el comedor",           "Llamar al yayo",
                            "Comprar pilas AAA",   "Pedir cita médica",          "Regar las plantas 🌱",
                            "Devolver los libros", "Cambiar el aceite del coche"};

void ponEntidades(Base &base, Azar &a, qint64 recordatorios, qint64 listas)
{
    ponCoreData(base, a.uuid(),
                {{"REMCDObject", 16, 0},
                 {"REMCDBaseList", entLista, listas},
                 {"REMCDReminder", entRecordatorio, recordatorios}});
}

} // namespace

void ponRecordatorios(Contexto &c)
{
    auto a = c.azar("recordatorios");
    constexpr auto dominio = "AppDomainGroup-group.com.apple.reminders";
    const auto sitio = u"Container_v1/Stores/Data-%1.sqlite"_s;
    {
        // That of the phone itself, which stays empty where there is an account.
        Base local(c.dominio(dominio, sitio.arg(u"local"_s)));
        local.ejecuta(esquema);
        ponEntidades(local, a, 0, 0);
        c.recoge(local);
    }
    Base base(c.dominio(dominio, sitio.arg(a.uuid())));
    base.ejecuta(esquema);
    Insercion lista(base, "ZREMCDBASELIST", "Z_ENT, Z_OPT, ZISGROUP, ZMARKEDFORDELETION, ZNAME, ZCKIDENTIFIER");
    const auto viva = lista.mete(entLista, 1, 0, 0, "Recordatorios", a.uuid());
    const auto tirada = lista.mete(entLista, 1, 0, 1, "Mudanza", a.uuid());
    Insercion cosa(base, "ZREMCDREMINDER",
                   "Z_ENT, Z_OPT, ZALLDAY, ZCOMPLETED, ZMARKEDFORDELETION, ZPRIORITY, ZLIST, ZCOMPLETIONDATE, "
                   "ZCREATIONDATE, ZDISPLAYDATEDATE, ZDUEDATE, ZTIMEZONE, ZTITLE, ZCKIDENTIFIER");
    const auto mete = [&](const QString &titulo, std::optional<qint64> vence, bool diaEntero, bool hecha, qint64 en,
                          bool marcada) {
        std::optional<qint64> suyo;
        if (vence)
            suyo = *vence - principioApple;
        cosa.mete(entRecordatorio, 1, diaEntero, hecha, marcada, a.entero(0, 1) * 5, en,
                  hecha ? std::optional(apple(vence.value_or(ahoraDelTelefono) - 3600)) : std::nullopt,
                  apple(vence.value_or(ahoraDelTelefono) - 400'000), suyo, suyo,
                  vence && !diaEntero ? std::optional(u"Europe/Madrid"_s) : std::nullopt, titulo, a.uuid());
    };
    const int cuantas = c.segun(6, 40, 300);
    for (int i = 0; i < cuantas; ++i) {
        const auto vence = ahoraDelTelefono + (5 - i) * 260'000;
        const bool diaEntero = i % 4 == 2; // midnight UTC of that day
        mete(QString::fromUtf8(tareas[static_cast<size_t>(i) % tareas.size()]),
             i % 4 == 3 ? std::nullopt : std::optional(diaEntero ? vence - vence % 86400 : vence), diaEntero,
             i > 4 && a.si(80), viva, false);
    }
    mete(u"Devolver el taladro"_s, std::nullopt, false, false, viva, true);
    mete(u"Pedir cajas"_s, std::nullopt, false, false, tirada, false);
    ponEntidades(base, a, cuantas + 3, 2);
    base.empiezaDiario(true);
    mete(u"Llamar al fontanero"_s, ahoraDelTelefono + 86400, false, false, viva, false);
    c.recoge(base);
}

} // namespace simulado
