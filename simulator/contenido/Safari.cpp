#include "contenido/Base.h"
#include "contenido/Contexto.h"

#include <array>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

const char *const esquemaHistorial = R"(
CREATE TABLE history_items (id INTEGER PRIMARY KEY AUTOINCREMENT, url TEXT NOT NULL UNIQUE, domain_expansion TEXT NULL,
    visit_count INTEGER NOT NULL, daily_visit_counts BLOB NOT NULL, weekly_visit_counts BLOB NULL, autocomplete_triggers BLOB NULL,
    should_recompute_derived_visit_counts INTEGER NOT NULL, visit_count_score INTEGER NOT NULL,
    status_code INTEGER NOT NULL DEFAULT 0);
CREATE TABLE history_visits (id INTEGER PRIMARY KEY AUTOINCREMENT,
    history_item INTEGER NOT NULL REFERENCES history_items(id) ON DELETE CASCADE, visit_time REAL NOT NULL, title TEXT NULL,
    load_successful BOOLEAN NOT NULL DEFAULT 1, http_non_get BOOLEAN NOT NULL DEFAULT 0, synthesized BOOLEAN NOT NULL DEFAULT 0,
    redirect_source INTEGER NULL UNIQUE REFERENCES history_visits(id) ON DELETE CASCADE,
    redirect_destination INTEGER NULL UNIQUE REFERENCES history_visits(id) ON DELETE CASCADE, origin INTEGER NOT NULL DEFAULT 0,
    generation INTEGER NOT NULL DEFAULT 0, attributes INTEGER NOT NULL DEFAULT 0, score INTEGER NOT NULL DEFAULT 0);
CREATE TABLE history_tombstones (id INTEGER PRIMARY KEY AUTOINCREMENT, start_time REAL NOT NULL, end_time REAL NOT NULL, url TEXT,
    generation INTEGER NOT NULL DEFAULT 0);
CREATE TABLE history_client_versions (client_version INTEGER PRIMARY KEY, last_seen REAL NOT NULL);
CREATE TABLE history_tags (id INTEGER PRIMARY KEY AUTOINCREMENT, type INTEGER NOT NULL, level INTEGER NOT NULL,
    identifier TEXT NOT NULL UNIQUE, title TEXT NOT NULL, modification_timestamp REAL NOT NULL, item_count INTEGER NOT NULL DEFAULT 0);
CREATE TABLE history_items_to_tags (history_item INTEGER NOT NULL REFERENCES history_items(id) ON DELETE CASCADE,
    tag_id INTEGER NOT NULL REFERENCES history_tags(id) ON DELETE CASCADE, timestamp REAL NOT NULL, UNIQUE(history_item, tag_id));
CREATE TABLE metadata (key TEXT NOT NULL UNIQUE, value);
CREATE INDEX history_visits__last_visit ON history_visits (history_item, visit_time DESC, synthesized ASC);
INSERT INTO metadata VALUES ('sync_generation', 3);
)";

const char *const esquemaMarcadores = R"(
CREATE TABLE bookmarks (id INTEGER PRIMARY KEY, special_id INTEGER DEFAULT 0, parent INTEGER REFERENCES bookmarks, type INTEGER,
    title TEXT, url TEXT COLLATE NOCASE, num_children INTEGER DEFAULT 0, editable INTEGER DEFAULT 1, deletable INTEGER DEFAULT 1,
    hidden INTEGER DEFAULT 0, hidden_ancestor_count INTEGER DEFAULT 0, order_index INTEGER NOT NULL, external_uuid TEXT UNIQUE,
    read INTEGER DEFAULT NULL, last_modified REAL DEFAULT NULL, server_id TEXT, sync_key TEXT, sync_data BLOB,
    added INTEGER DEFAULT 1, deleted INTEGER DEFAULT 0, extra_attributes BLOB DEFAULT NULL, local_attributes BLOB DEFAULT NULL,
    fetched_icon BOOL DEFAULT 0, icon BLOB DEFAULT NULL, dav_generation INTEGER DEFAULT 0, locally_added BOOL DEFAULT 0,
    archive_status INTEGER DEFAULT 0, syncable BOOL DEFAULT 1, web_filter_status INTEGER DEFAULT 0,
    modified_attributes UNSIGNED BIG INT DEFAULT 0, date_closed REAL DEFAULT NULL, last_selected_child INTEGER DEFAULT NULL,
    subtype INTEGER DEFAULT 0);
CREATE TABLE folder_ancestors (id INTEGER PRIMARY KEY AUTOINCREMENT, folder_id INTEGER NOT NULL, ancestor_id INTEGER NOT NULL,
    UNIQUE (folder_id, ancestor_id));
CREATE TABLE bookmark_title_words (id INTEGER PRIMARY KEY, bookmark_id INTEGER NOT NULL, word TEXT, word_index INTEGER NOT NULL);
CREATE TABLE generations (generation INTEGER NOT NULL DEFAULT 0);
CREATE TABLE sync_properties (key TEXT UNIQUE NOT NULL, value TEXT NOT NULL);
)";

struct Pagina {
    const char *sitio;
    const char *titulo;
};
constexpr std::array paginas{Pagina{"noticias.example/portada", "Noticias de hoy"},
                             Pagina{"tiempo.example/madrid?dias=7&unidad=c", "El tiempo en Madrid: 7 días; mapas"},
                             Pagina{"recetas.example/croquetas-de-jamón", "Croquetas de jamón — receta paso a paso"},
                             Pagina{"trenes.example/horarios", "Horarios y billetes"},
                             Pagina{"museo.example/exposicion", "Exposición temporal\nSorolla a la orilla"},
                             Pagina{"biblioteca.example/catalogo", "Catálogo de la biblioteca"},
                             Pagina{"tienda.example/zapatos/niña", "Zapatos de niña <rebajas> & más"},
                             Pagina{"salud.example/cita", "Pedir cita previa"},
                             Pagina{"mapas.example/@43.36,-8.41,12z", ""},
                             Pagina{"video.example/ver?v=k3n9", "Cómo arreglar un grifo que gotea 💧"}};

void ponHistorial(Contexto &c, const char *dominio)
{
    auto a = c.azar("historial");
    Base base(c.dominio(dominio, u"Library/Safari/History.db"_s));
    base.ejecuta(esquemaHistorial);
    Insercion pagina(base, "history_items",
                     "url, domain_expansion, visit_count, daily_visit_counts, should_recompute_derived_visit_counts, "
                     "visit_count_score");
    Insercion visita(base, "history_visits", "history_item, visit_time, title, load_successful, origin");
    const int cuantas = c.segun(30, 520, 8000);
    std::vector<qint64> filas;
    const size_t distintas = c.segun<size_t>(10, 90, 600);
    for (size_t i = 0; i < distintas; ++i) {
        const auto &p = paginas[i % paginas.size()];
        auto direccion = u"https://"_s + QString::fromUtf8(p.sitio);
        if (i >= paginas.size())
            direccion += u"/%1"_s.arg(i);
        filas.push_back(pagina.mete(direccion, QString::fromUtf8(p.sitio).section(u'.', 0, 0),
                                    cuantas / static_cast<int>(distintas), QByteArray(4, '\1'), 0, 100));
    }
    auto visitada = [&](int i) {
        const auto cual = static_cast<size_t>(a.entero(0, static_cast<qint64>(distintas) - 1));
        const auto titulo = QString::fromUtf8(paginas[cual % paginas.size()].titulo);
        visita.mete(filas[cual], apple(ahoraDelTelefono - static_cast<qint64>(cuantas - i) * 6000) + a.real(0, 5000),
                    titulo.isEmpty() ? std::nullopt : std::optional(titulo), 1, a.si(20));
    };
    for (int i = 0; i < cuantas - 2; ++i)
        visitada(i);
    base.empiezaDiario(true);
    visitada(cuantas - 2);
    visitada(cuantas - 1);
    c.recoge(base);
}

} // namespace

void ponSafari(Contexto &c)
{
    ponHistorial(c, "HomeDomain");
    auto a = c.azar("marcadores");
    Base base(c.dominio("HomeDomain", u"Library/Safari/Bookmarks.db"_s));
    base.ejecuta(esquemaMarcadores);
    Insercion marca(base, "bookmarks",
                    "id, special_id, parent, type, title, url, num_children, editable, deletable, hidden, order_index, "
                    "external_uuid");
    marca.mete(0, 0, nullptr, 1, "Root", nullptr, 3, 0, 0, 0, 0, "Root");
    marca.mete(1, 1, 0, 1, "BookmarksBar", nullptr, 4, 0, 0, 0, 0, "Favorites Bar");
    marca.mete(2, 2, 0, 1, "BookmarksMenu", nullptr, 0, 0, 0, 0, 1, "Bookmarks Menu");
    marca.mete(3, 3, 0, 1, "com.apple.ReadingList", nullptr, 2, 0, 0, 0, 2, "Reading List");
    for (int i = 0; i < c.segun(8, 35, 300); ++i) {
        const auto &p = paginas[static_cast<size_t>(i) % paginas.size()];
        const auto vuelta = i / static_cast<int>(paginas.size());
        const auto direccion = u"https://"_s + QString::fromUtf8(p.sitio) + (vuelta ? u"#%1"_s.arg(vuelta) : QString());
        marca.mete(10 + i, 0, i % 5 == 4 ? 3 : 1, 0, QString::fromUtf8(p.titulo), direccion, 0, 1, 1, 0, i, a.uuid());
    }
    base.ejecuta("INSERT INTO folder_ancestors (folder_id, ancestor_id) VALUES (1, 0), (2, 0), (3, 0);"
                 "INSERT INTO generations VALUES (41)");
    c.recoge(base);
}

} // namespace simulado
