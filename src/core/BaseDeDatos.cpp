#include "core/BaseDeDatos.h"

#include "core/FicheroAjeno.h"
#include "core/Vuelta.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <ctime>
#include <mutex>
#include <utility>

namespace vellora
{

namespace
{

constexpr qint64 mega = 1024 * 1024;
// The cache, the largest value in two encodings, and the sorters, which put on the disk what does not fit.
constexpr qint64 memoriaDeTodas = 192 * mega;
constexpr int largoDeSentencia = 1'000'000;
// Half a million messages are sorted and written in about two seconds, out of a file of two hundred megabytes.
constexpr double segundosSiempre = 10;
constexpr double segundosPorMega = 0.2;
// A row takes at least six bytes of its page, and joins of ours repeat short names only.
constexpr qint64 bytesPorFila = 4;
constexpr qint64 filasSiempre = 1000;
constexpr qint64 vecesElFichero = 8;
constexpr qint64 holgura = 16 * mega;

double segundosDelHilo()
{
    timespec ahora = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ahora);
    return static_cast<double>(ahora.tv_sec) + static_cast<double>(ahora.tv_nsec) / 1e9;
}

int vencido(void *limite)
{
    return segundosDelHilo() > *static_cast<double *>(limite) ? 1 : 0;
}

void acotar(sqlite3 *base)
{
    static std::once_flag unaVez;
    std::call_once(unaVez, [] { sqlite3_hard_heap_limit64(memoriaDeTodas); });
    sqlite3_limit(base, SQLITE_LIMIT_LENGTH, BaseDeDatos::maximoDeValor);
    sqlite3_limit(base, SQLITE_LIMIT_SQL_LENGTH, largoDeSentencia);
    sqlite3_limit(base, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_db_config(base, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(base, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(base, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_db_config(base, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_drop_modules(base, nullptr);
    // A second core helps: sorting half a million messages takes as long as the rest of the work. More memory does not.
    sqlite3_exec(base, "PRAGMA threads=2; PRAGMA cell_size_check=1", nullptr, nullptr, nullptr);
}

} // namespace

QByteArrayView Fila::vista(const void *bytes, int columna) const
{
    const auto largo = sqlite3_column_bytes(consulta, columna);
    entregados += largo;
    return {static_cast<const char *>(bytes), largo};
}

QString Fila::texto(int columna) const
{
    return QString::fromUtf8(utf8(columna));
}

QByteArrayView Fila::utf8(int columna) const
{
    return vista(sqlite3_column_text(consulta, columna), columna);
}

std::optional<double> Fila::real(int columna) const
{
    const auto tipo = sqlite3_column_type(consulta, columna);
    const bool esNumero = tipo == SQLITE_INTEGER || tipo == SQLITE_FLOAT;
    return esNumero ? std::optional(sqlite3_column_double(consulta, columna)) : std::nullopt;
}

QByteArray Fila::datos(int columna) const
{
    const auto bytes = vista(sqlite3_column_blob(consulta, columna), columna);
    return QByteArray::fromRawData(bytes.data(), bytes.size());
}

int BaseDeDatos::autorizar(void *leidas, int accion, const char *tabla, const char *columna, const char *, const char *)
{
    if (accion != SQLITE_READ || tabla == nullptr || columna == nullptr)
        return SQLITE_OK;
    auto &suyas = *static_cast<Leidas *>(leidas);
    const QByteArray nombre(tabla);
    if (!suyas.tablas.contains(nombre))
        suyas.nuevas.insert(nombre);
    const bool calculada = suyas.calculadas.contains(nombre + '\n' + QByteArray(columna).toLower());
    return calculada ? SQLITE_IGNORE : SQLITE_OK;
}

BaseDeDatos::BaseDeDatos(sqlite3 *abierta, const QString &fichero)
    : leidas(std::make_unique<Leidas>())
    , base(abierta)
    , largo(largoDeAjeno(fichero).value_or(0) + largoDeAjeno(fichero + QStringLiteral("-wal")).value_or(0))
{
    if (abierta == nullptr)
        return;
    acotar(abierta);
    sqlite3_set_authorizer(abierta, &BaseDeDatos::autorizar, leidas.get());
}

std::optional<BaseDeDatos> BaseDeDatos::abrir(const QString &fichero)
{
    if (!largoDeAjeno(fichero))
        return {};
    // Immutable: no lock, no journal and no -shm are made beside a file of a backup.
    const auto direccion = "file:" + QUrl::toPercentEncoding(fichero, "/") + "?immutable=1";
    sqlite3 *manejador = nullptr;
    const auto codigo = sqlite3_open_v2(direccion.constData(), &manejador,
                                        SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
    BaseDeDatos abierta(manejador, fichero);
    return codigo == SQLITE_OK ? std::optional(std::move(abierta)) : std::nullopt;
}

std::optional<BaseDeDatos> BaseDeDatos::abrirCopia(const QString &fichero)
{
    if (!largoDeAjeno(fichero))
        return {};
    sqlite3 *manejador = nullptr;
    const auto codigo =
        sqlite3_open_v2(fichero.toUtf8().constData(), &manejador, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    BaseDeDatos abierta(manejador, fichero);
    const bool legible = codigo == SQLITE_OK &&
                         abierta.porCadaFila("SELECT 1 FROM sqlite_master LIMIT 1", [](const Fila &) { return true; });
    return legible ? std::optional(std::move(abierta)) : std::nullopt;
}

BaseDeDatos::Sentencia BaseDeDatos::compilar(const char *sql) const
{
    const auto preparar = [this](const QByteArray &texto) {
        sqlite3_stmt *preparada = nullptr;
        sqlite3_prepare_v2(base.get(), texto.constData(), -1, &preparada, nullptr);
        return Sentencia(preparada, &sqlite3_finalize);
    };
    auto sentencia = preparar(sql);
    const auto nuevas = std::exchange(leidas->nuevas, {});
    if (!sentencia || nuevas.isEmpty())
        return sentencia;
    // The expression of a generated column is the file's own, and one call of a function in it may take for ever. Only
    // SQLite knows the tables of a query by the names that it goes by.
    constexpr int nombre = 1;
    constexpr int clase = 6;
    constexpr int alLeer = 2;
    const auto antes = leidas->calculadas.size();
    for (const auto &tabla : nuevas) {
        const auto columnas = preparar("PRAGMA table_xinfo(\"" + QByteArray(tabla).replace('"', "\"\"") + "\")");
        while (columnas && sqlite3_step(columnas.get()) == SQLITE_ROW) {
            const auto *letras = reinterpret_cast<const char *>(sqlite3_column_text(columnas.get(), nombre));
            if (sqlite3_column_int(columnas.get(), clase) == alLeer)
                leidas->calculadas.insert(tabla + '\n' + QByteArray(letras).toLower());
        }
        leidas->tablas.insert(tabla);
    }
    return leidas->calculadas.size() == antes ? std::move(sentencia) : preparar(sql);
}

bool BaseDeDatos::porCadaFila(const char *sql, const std::function<bool(const Fila &)> &fila) const
{
    const auto megas = static_cast<double>(largo) / static_cast<double>(mega);
    double limite = segundosDelHilo() + segundosSiempre + segundosPorMega * megas;
    constexpr int pasosEntreMiradas = 1000;
    sqlite3_progress_handler(base.get(), pasosEntreMiradas, &vencido, &limite);
    const std::unique_ptr<sqlite3, void (*)(sqlite3 *)> sinVigia(
        base.get(), [](sqlite3 *suya) { sqlite3_progress_handler(suya, 0, nullptr, nullptr); });
    const auto consulta = compilar(sql);
    if (!consulta)
        return entera(sqlite3_errcode(base.get()));
    qint64 quedan = largo / bytesPorFila + filasSiempre;
    qint64 entregados = 0;
    int paso = SQLITE_ROW;
    while ((paso = sqlite3_step(consulta.get())) == SQLITE_ROW) {
        if (!fila(Fila(consulta.get(), entregados)))
            return true;
        if (--quedan < 0 || entregados > vecesElFichero * largo + holgura)
            return entera(SQLITE_TOOBIG);
    }
    return entera(paso);
}

/// Notes the end of a query; true when it came to its end.
bool BaseDeDatos::entera(int codigo) const
{
    const int clase = codigo & 0xFF;
    if (clase == SQLITE_DONE)
        return true;
    // Plain errors speak of the query: other versions of the phone's system have other tables.
    if (clase != SQLITE_ERROR && clase != SQLITE_AUTH) {
        danada_ = true;
        Vuelta::danada(QFileInfo(QFile::decodeName(sqlite3_db_filename(base.get(), "main"))).fileName());
    }
    return false;
}

} // namespace vellora
