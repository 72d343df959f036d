#include "contenido/Base.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <sqlite3.h>

namespace simulado
{

Base::Base(const QString &ruta, int pagina) : m_ruta(ruta)
{
    QFile::remove(ruta);
    if (sqlite3_open(QFile::encodeName(ruta).constData(), &m_base) != SQLITE_OK)
        anota("open");
    // The log's salts come from SQLite's own random numbers: a fixed seed keeps the bytes the same in each run.
    sqlite3_test_control(SQLITE_TESTCTRL_PRNG_SEED, 20261120, static_cast<sqlite3 *>(nullptr));
    ejecuta(("PRAGMA page_size=" + QByteArray::number(pagina)).constData());
    ejecuta("PRAGMA auto_vacuum=INCREMENTAL; PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; BEGIN");
}

Base::~Base()
{
    if (!sqlite3_get_autocommit(m_base))
        ejecuta("COMMIT");
    if (sqlite3_close(m_base) != SQLITE_OK)
        sqlite3_close_v2(m_base);
    if (m_quitaIndice)
        QFile::remove(m_ruta + QStringLiteral("-shm"));
}

void Base::anota(const char *donde)
{
    if (m_motivo.isEmpty())
        m_motivo = QStringLiteral("%1: %2 (%3)")
                       .arg(m_ruta, QString::fromUtf8(sqlite3_errmsg(m_base)), QString::fromUtf8(donde).left(120));
}

void Base::ejecuta(const char *sql)
{
    if (sqlite3_exec(m_base, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        anota(sql);
}

void Base::empiezaDiario(bool conIndice)
{
    ejecuta("COMMIT; PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0; BEGIN");
    sqlite3_db_config(m_base, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    m_quitaIndice = !conIndice;
}

qint64 Base::ultimaFila() const
{
    return sqlite3_last_insert_rowid(m_base);
}

Insercion::Insercion(Base &base, const char *tabla, const char *columnas) : m_base(base)
{
    m_columnas = static_cast<int>(std::count(columnas, columnas + std::strlen(columnas), ',')) + 1;
    QByteArray sql = QByteArray("INSERT INTO ") + tabla + " (" + columnas + ") VALUES (?";
    for (int i = 1; i < m_columnas; ++i)
        sql += ",?";
    sql += ')';
    if (sqlite3_prepare_v2(base.m_base, sql.constData(), -1, &m_sentencia, nullptr) != SQLITE_OK)
        base.anota(sql.constData());
}

Insercion::~Insercion()
{
    sqlite3_finalize(m_sentencia);
}

void Insercion::enlaza(int columna, std::nullptr_t)
{
    sqlite3_bind_null(m_sentencia, columna);
}

void Insercion::enlaza(int columna, const QString &texto)
{
    const auto utf8 = texto.toUtf8();
    sqlite3_bind_text(m_sentencia, columna, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}

void Insercion::enlaza(int columna, const char *texto)
{
    sqlite3_bind_text(m_sentencia, columna, texto, -1, SQLITE_TRANSIENT);
}

void Insercion::enlaza(int columna, const QByteArray &datos)
{
    sqlite3_bind_blob(m_sentencia, columna, datos.constData(), static_cast<int>(datos.size()), SQLITE_TRANSIENT);
}

void Insercion::enlaza(int columna, double valor)
{
    sqlite3_bind_double(m_sentencia, columna, valor);
}

void Insercion::enlaza(int columna, qint64 valor)
{
    sqlite3_bind_int64(m_sentencia, columna, valor);
}

qint64 Insercion::termina(int valores)
{
    if (valores != m_columnas || sqlite3_step(m_sentencia) != SQLITE_DONE)
        m_base.anota(m_sentencia ? sqlite3_sql(m_sentencia) : "insert");
    sqlite3_reset(m_sentencia);
    return m_base.ultimaFila();
}

void ponCoreData(Base &base, const QString &uuid, std::initializer_list<Entidad> entidades)
{
    base.ejecuta(
        "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);"
        "CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB);"
        "CREATE TABLE Z_MODELCACHE (Z_CONTENT BLOB)");
    Insercion clave(base, "Z_PRIMARYKEY", "Z_ENT, Z_NAME, Z_SUPER, Z_MAX");
    for (const auto &e : entidades)
        clave.mete(e.numero, e.nombre, 0, e.maximo);
    Insercion(base, "Z_METADATA", "Z_VERSION, Z_UUID, Z_PLIST").mete(1, uuid, QByteArray());
}

} // namespace simulado
