#pragma once

#include <QByteArray>
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
    explicit Fila(sqlite3_stmt *preparada) : consulta(preparada) {}

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
    sqlite3_stmt *consulta;
};

/// A database of the phone; closes itself. Views of the file are not run: none of the phone's tables is one, and a
/// hostile one never ends. One thread at a time.
class BaseDeDatos
{
public:
    /// Opens a file that nobody writes to. Absent when the file is missing or cannot be opened. A file that is no
    /// database is only noticed by a query.
    static std::optional<BaseDeDatos> abrir(const QString &fichero);
    /// The same for a private copy: the changes in the "-wal" beside it are taken in. Absent too when the file cannot
    /// be read as a database that way.
    static std::optional<BaseDeDatos> abrirCopia(const QString &fichero);

    /// Hands each row to `fila` until it returns false. Gives false when the query cannot be run to its end: a table or
    /// column that is missing, a damaged page.
    bool porCadaFila(const char *sql, const std::function<bool(const Fila &)> &fila) const;

private:
    struct Cerrar {
        void operator()(sqlite3 *base) const { sqlite3_close(base); }
    };
    explicit BaseDeDatos(sqlite3 *abierta) : base(abierta) {}

    std::unique_ptr<sqlite3, Cerrar> base;
};

} // namespace vellora
