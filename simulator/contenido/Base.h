#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace simulado
{

/// A database being made. The first failure is kept in `motivo` and the rest goes on: the caller asks once, at the end.
class Base
{
public:
    /// `pagina` is the page size in bytes. The phone's own databases use 4096.
    explicit Base(const QString &ruta, int pagina = 4096);
    ~Base();
    Base(const Base &) = delete;
    Base &operator=(const Base &) = delete;

    void ejecuta(const char *sql);
    /// Closes the main part of the database; what is written from here on stays in the "-wal" file beside it, as on a
    /// phone in use. `conIndice` also leaves the "-shm" file.
    void empiezaDiario(bool conIndice);
    [[nodiscard]] qint64 ultimaFila() const;
    [[nodiscard]] QString motivo() const { return m_motivo; }

private:
    friend class Insercion;
    void anota(const char *donde);

    sqlite3 *m_base = nullptr;
    QString m_ruta;
    QString m_motivo;
    bool m_quitaIndice = false;
};

/// A number, or NULL when it is 0: the rows that others point at count from 1.
struct FilaONada {
    qint64 fila;
};

/// A prepared INSERT of the given columns ("a, b, c") into one table.
class Insercion
{
public:
    Insercion(Base &base, const char *tabla, const char *columnas);
    ~Insercion();
    Insercion(const Insercion &) = delete;
    Insercion &operator=(const Insercion &) = delete;

    /// One value a column, in order. Returns the new row's number.
    template <class... V> qint64 mete(const V &...valores)
    {
        int columna = 0;
        (enlaza(++columna, valores), ...);
        return termina(columna);
    }

private:
    void enlaza(int columna, std::nullptr_t);
    void enlaza(int columna, const QString &texto);
    void enlaza(int columna, const char *texto);
    void enlaza(int columna, const QByteArray &datos);
    void enlaza(int columna, double valor);
    void enlaza(int columna, qint64 valor);
    void enlaza(int columna, int valor) { enlaza(columna, static_cast<qint64>(valor)); }
    void enlaza(int columna, long valor) { enlaza(columna, static_cast<qint64>(valor)); }
    void enlaza(int columna, FilaONada valor)
    {
        if (valor.fila != 0)
            enlaza(columna, valor.fila);
        else
            enlaza(columna, nullptr);
    }
    void enlaza(int columna, bool valor) { enlaza(columna, static_cast<qint64>(valor)); }
    template <class T> void enlaza(int columna, const std::optional<T> &valor)
    {
        if (valor)
            enlaza(columna, *valor);
        else
            enlaza(columna, nullptr);
    }
    qint64 termina(int valores);

    Base &m_base;
    sqlite3_stmt *m_sentencia = nullptr;
    int m_columnas = 0;
};

/// One entity of a Core Data store: its name, its number (Z_ENT) and the highest Z_PK in use.
struct Entidad {
    const char *nombre;
    int numero;
    qint64 maximo;
};
/// The three tables that each Core Data store carries: Z_PRIMARYKEY, Z_METADATA and Z_MODELCACHE.
void ponCoreData(Base &base, const QString &uuid, std::initializer_list<Entidad> entidades);

} // namespace simulado
