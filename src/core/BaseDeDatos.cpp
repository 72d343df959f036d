#include "core/BaseDeDatos.h"

#include <QUrl>

namespace vellora
{

QString Fila::texto(int columna) const
{
    const auto *letras = reinterpret_cast<const char *>(sqlite3_column_text(consulta, columna));
    return QString::fromUtf8(letras, sqlite3_column_bytes(consulta, columna));
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
    const auto codigo =
        sqlite3_open_v2(direccion.constData(), &manejador, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    BaseDeDatos abierta(manejador);
    return codigo == SQLITE_OK ? std::optional(std::move(abierta)) : std::nullopt;
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
