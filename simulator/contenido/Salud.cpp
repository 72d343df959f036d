#include "contenido/Base.h"
#include "contenido/Contexto.h"

#include <array>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

const char *const esquemaSegura = R"(
CREATE TABLE objects (data_id INTEGER PRIMARY KEY AUTOINCREMENT, uuid BLOB UNIQUE, provenance INTEGER NOT NULL, type INTEGER,
    creation_date REAL, sync_provenance INTEGER);
CREATE TABLE samples (data_id INTEGER PRIMARY KEY, start_date REAL, end_date REAL, data_type INTEGER);
CREATE TABLE quantity_samples (data_id INTEGER PRIMARY KEY, quantity REAL, original_quantity REAL, original_unit INTEGER);
CREATE TABLE category_samples (data_id INTEGER PRIMARY KEY, value INTEGER);
CREATE TABLE workouts (data_id INTEGER PRIMARY KEY, total_distance REAL, goal_type INTEGER, goal REAL, condenser_version INTEGER,
    condenser_date REAL);
CREATE TABLE workout_activities (ROWID INTEGER PRIMARY KEY, uuid BLOB UNIQUE, owner_id INTEGER, is_primary_activity INTEGER,
    activity_type INTEGER, location_type INTEGER, start_date REAL, end_date REAL, duration REAL, metadata BLOB);
CREATE TABLE unit_strings (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, unit_string TEXT UNIQUE);
CREATE TABLE data_provenances (ROWID INTEGER PRIMARY KEY, sync_provenance INTEGER, origin_product_type TEXT, origin_build TEXT,
    local_product_type TEXT, local_build TEXT, source_id INTEGER, device_id INTEGER, contributor_id INTEGER,
    source_version TEXT, tz_name TEXT, origin_major_version INTEGER, origin_minor_version INTEGER, origin_patch_version INTEGER,
    derived_flags INTEGER);
CREATE TABLE metadata_keys (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, key TEXT UNIQUE);
CREATE TABLE metadata_values (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, key_id INTEGER, object_id INTEGER, value_type INTEGER,
    string_value TEXT, numerical_value REAL, date_value REAL, data_value BLOB);
CREATE TABLE key_value_secure (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, category INTEGER, domain TEXT, key TEXT, value,
    provenance INTEGER, mod_date REAL, sync_identity INTEGER);
CREATE INDEX samples_type_end ON samples (data_type, end_date);
INSERT INTO unit_strings (unit_string) VALUES ('count'), ('m'), ('kg'), ('count/min'), ('kcal'), ('min');
)";

const char *const esquemaAbierta = R"(
CREATE TABLE sources (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, uuid BLOB UNIQUE, bundle_id TEXT, name TEXT, source_options INTEGER,
    local_device INTEGER, product_type TEXT, deleted INTEGER, mod_date REAL, provenance INTEGER, sync_anchor INTEGER,
    owner_bundle_id TEXT);
CREATE TABLE source_devices (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, uuid BLOB UNIQUE, name TEXT, manufacturer TEXT, model TEXT,
    hardware TEXT, firmware TEXT, software TEXT, localIdentifier TEXT, FDAUDI TEXT, creation_date REAL, sync_provenance INTEGER);
CREATE TABLE key_value (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, category INTEGER, domain TEXT, key TEXT, value, provenance INTEGER,
    mod_date REAL);
)";

/// One kind of measurement: its code in samples.data_type, its unit's row, typical values and how many a day.
struct Medida {
    int tipo;
    int unidad; ///< 0: a category sample
    double desde, hasta;
    int alDia;
};
constexpr std::array medidas{Medida{7, 1, 40, 900, 9}, Medida{8, 2, 30, 700, 9}, Medida{5, 4, 52, 150, 12},
                             Medida{10, 5, 3, 60, 8},  Medida{9, 5, 40, 75, 4},  Medida{12, 1, 1, 5, 2},
                             Medida{3, 3, 61, 64, 0},  Medida{63, 0, 0, 5, 1},   Medida{75, 6, 1, 12, 1},
                             Medida{99, 0, 0, 0, 0}};

} // namespace

void ponSalud(Contexto &c)
{
    auto a = c.azar("salud");
    {
        Base base(c.dominio("HealthDomain", u"Health/healthdb_secure.sqlite"_s));
        base.ejecuta(esquemaSegura);
        Insercion(
            base, "data_provenances",
            "sync_provenance, origin_product_type, origin_build, local_product_type, local_build, source_id, "
            "device_id, "
            "source_version, tz_name, origin_major_version, origin_minor_version, origin_patch_version, derived_flags")
            .mete(0, c.opciones.producto, "21F90", c.opciones.producto, "21F90", 1, 1, c.opciones.version,
                  "Europe/Madrid", 17, 5, 1, 0);
        Insercion objeto(base, "objects", "uuid, provenance, type, creation_date");
        Insercion muestra(base, "samples", "data_id, start_date, end_date, data_type");
        Insercion cantidad(base, "quantity_samples", "data_id, quantity");
        Insercion clase(base, "category_samples", "data_id, value");
        auto mete = [&](const Medida &m, double cuando) {
            const auto fila = objeto.mete(a.bytes(16), 1, 1, cuando + 60);
            muestra.mete(fila, cuando, cuando + (m.tipo == 63 ? a.real(18'000, 30'000) : a.real(30, 600)), m.tipo);
            if (m.unidad > 0)
                cantidad.mete(fila, m.tipo == 12 ? static_cast<double>(a.entero(1, 5)) : a.real(m.desde, m.hasta));
            else
                clase.mete(fila, a.entero(0, static_cast<qint64>(m.hasta)));
        };
        const int cuantosDias = c.segun(10, 180, 1500);
        for (int dia = cuantosDias; dia > 0; --dia)
            for (const auto &m : medidas)
                for (int i = 0; i < std::max(m.alDia, dia % 10 == 0 ? 1 : 0); ++i)
                    mete(m, apple(ahoraDelTelefono - dia * 86400) + i * 5000 + a.real(0, 4000));
        base.empiezaDiario(false);
        mete(medidas[0], apple(ahoraDelTelefono - 1800));
        c.recoge(base);
    }
    Base base(c.dominio("HealthDomain", u"Health/healthdb.sqlite"_s));
    base.ejecuta(esquemaAbierta);
    Insercion fuente(
        base, "sources",
        "uuid, bundle_id, name, source_options, local_device, product_type, deleted, mod_date, provenance");
    fuente.mete(a.bytes(16), u"com.apple.health."_s + a.uuid(), c.opciones.nombre, 5, 1, c.opciones.producto, 0,
                apple(ahoraDelTelefono - 9'000'000), 0);
    fuente.mete(a.bytes(16), "es.caminar.pasos", "Pasos y Más", 0, 0, nullptr, 0, apple(ahoraDelTelefono - 5'000'000),
                0);
    Insercion(base, "source_devices", "uuid, name, manufacturer, model, hardware, software, creation_date")
        .mete(a.bytes(16), "iPhone", "Apple Inc.", "iPhone", c.opciones.producto, c.opciones.version,
              apple(ahoraDelTelefono - 9'000'000));
    c.recoge(base);
}

} // namespace simulado
