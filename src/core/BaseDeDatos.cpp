#include "core/BaseDeDatos.h"

#include <QUrl>

namespace vellora
{

namespace
{

/// Only tables are read, and a second core helps: sorting half a million messages takes as long as the rest of the
/// work. More memory does not help.
void preparar(sqlite3 *base)
{
    if (base == nullptr)
        return;
    sqlite3_db_config(base, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_exec(base, "PRAGMA threads=2", nullptr, nullptr, nullptr);
}

} // namespace

QString Fila::texto(int columna) const
{
    const auto *letras = reinterpret_cast<const char *>(sqlite3_column_text(consulta, columna));
    return QString::fromUtf8(letras, sqlite3_column_bytes(consulta, columna));
}

QByteArrayView Fila::utf8(int columna) const
{
    const auto *letras = sqlite3_column_text(consulta, columna);
    return {letras, sqlite3_column_bytes(consulta, columna)};
}

std::optional<double> Fila::real(int columna) const
{
    const auto tipo = sqlite3_column_type(consulta, columna);
    const bool esNumero = tipo == SQLITE_INTEGER || tipo == SQLITE_FLOAT;
    return esNumero ? std::optional(sqlite3_column_double(consulta, columna)) : std::nullopt;
}

QByteArray Fila::datos(int columna) const
{
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(consulta, columna));
    return QByteArray::fromRawData(bytes, sqlite3_column_bytes(consulta, columna));
}

std::optional<BaseDeDatos> BaseDeDatos::abrir(const QString &fichero)
{
    // Immutable: no lock, no journal and no -shm are made beside a file of a backup.
    const auto direccion = "file:" + QUrl::toPercentEncoding(fichero, "/") + "?immutable=1";
    sqlite3 *manejador = nullptr;
    const auto codigo = sqlite3_open_v2(direccion.constData(), &manejador,
                                        SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
    BaseDeDatos abierta(manejador);
    preparar(manejador);
    return codigo == SQLITE_OK ? std::optional(std::move(abierta)) : std::nullopt;
}

std::optional<BaseDeDatos> BaseDeDatos::abrirCopia(const QString &fichero)
{
    sqlite3 *manejador = nullptr;
    const auto codigo =
        sqlite3_open_v2(fichero.toUtf8().constData(), &manejador, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    BaseDeDatos abierta(manejador);
    preparar(manejador);
    const bool legible = codigo == SQLITE_OK &&
                         abierta.porCadaFila("SELECT 1 FROM sqlite_master LIMIT 1", [](const Fila &) { return true; });
    return legible ? std::optional(std::move(abierta)) : std::nullopt;
}

bool BaseDeDatos::porCadaFila(const char *sql, const std::function<bool(const Fila &)> &fila) const
{
    sqlite3_stmt *preparada = nullptr;
    if (sqlite3_prepare_v2(base.get(), sql, -1, &preparada, nullptr) != SQLITE_OK)
        return false;
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> consulta(preparada, &sqlite3_finalize);
    int paso = SQLITE_ROW;
    while ((paso = sqlite3_step(preparada)) == SQLITE_ROW) {
        if (!fila(Fila(preparada)))
            return true;
    }
    return paso == SQLITE_DONE;
}

} // namespace vellora
