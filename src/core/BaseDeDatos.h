#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <sqlite3.h>

namespace vellora
{

/// One row of an answer, valid while its callback runs. Columns count from 0.
class Fila
{
public:
    /// `losEntregados` adds up the bytes that were handed out.
    Fila(sqlite3_stmt *preparada, qint64 &losEntregados) : consulta(preparada), entregados(losEntregados) {}

    /// Whatever the column holds, as text; empty for nothing.
    QString texto(int columna) const;
    /// The same in UTF-8, as it is stored: nobody has checked it. Good until the callback returns.
    QByteArrayView utf8(int columna) const;
    /// Absent for anything but a number.
    std::optional<double> real(int columna) const;
    qint64 entero(int columna) const { return sqlite3_column_int64(consulta, columna); }
    /// The bytes stay SQLite's and are good until the callback returns.
    QByteArray datos(int columna) const;

private:
    QByteArrayView vista(const void *bytes, int columna) const;

    sqlite3_stmt *consulta;
    qint64 &entregados;
};

/// A database of the phone; closes itself. One thread at a time.
///
/// Nothing that the file brings along is run: no view, no trigger, no virtual table, and a generated column reads as
/// nothing. What it can cost is bounded too: a value by `maximoDeValor`, the memory of SQLite in the whole process, the
/// processor time of a query by the size of the file, and what a query gives by what such a file can hold, since pages
/// may be shared by any number of others. A query that goes beyond gives false like any damaged one.
class BaseDeDatos
{
public:
    /// Bytes of one value, and of one row.
    static constexpr int maximoDeValor = 32 * 1024 * 1024;

    /// Opens a file that nobody writes to. Absent when the file is missing, is no regular file or cannot be opened. A
    /// file that is no database is only noticed by a query.
    static std::optional<BaseDeDatos> abrir(const QString &fichero);
    /// The same for a private copy: the changes in the "-wal" beside it are taken in. Absent too when the file cannot
    /// be read as a database that way.
    static std::optional<BaseDeDatos> abrirCopia(const QString &fichero);

    /// Hands each row to `fila` until it returns false. Gives false when the query cannot be run to its end: a table or
    /// column that is missing, a damaged page, a value or a result beyond the bounds.
    bool porCadaFila(const char *sql, const std::function<bool(const Fila &)> &fila) const;
    /// Whether some query was given less than the file should hold: a damaged page, no database at all, something
    /// beyond the bounds. A table or a column that is not there is no damage.
    bool danada() const { return danada_; }

private:
    struct Cerrar {
        void operator()(sqlite3 *base) const { sqlite3_close(base); }
    };
    using Sentencia = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;
    /// What SQLite was seen to read; it keeps the address.
    struct Leidas {
        QSet<QByteArray> tablas;     ///< whose columns have been looked at
        QSet<QByteArray> nuevas;     ///< not yet
        QSet<QByteArray> calculadas; ///< "table\ncolumn" in small letters
    };
    BaseDeDatos(sqlite3 *abierta, const QString &fichero);
    Sentencia compilar(const char *sql) const;
    bool entera(int codigo) const;
    static int autorizar(void *leidas, int accion, const char *tabla, const char *columna, const char *, const char *);

    std::unique_ptr<Leidas> leidas;
    std::unique_ptr<sqlite3, Cerrar> base; // goes before what it points to
    mutable bool danada_ = false;
    qint64 largo; ///< of the file and its log
};

} // namespace vellora
