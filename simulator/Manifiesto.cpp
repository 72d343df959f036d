#include "Manifiesto.h"

#include "Plist.h"

#include <QFile>

#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

constexpr auto esquema =
    "CREATE TABLE Files (fileID TEXT PRIMARY KEY, domain TEXT, relativePath TEXT, flags INTEGER, file BLOB);"
    "CREATE INDEX FilesDomainIdx ON Files(domain);"
    "CREATE INDEX FilesRelativePathIdx ON Files(relativePath);"
    "CREATE INDEX FilesFlagsIdx ON Files(flags);"
    "CREATE TABLE Properties (key TEXT PRIMARY KEY, value BLOB);";
constexpr auto insercion = "INSERT INTO Files (fileID, domain, relativePath, flags, file) VALUES (?,?,?,?,?)";
constexpr auto consulta = "SELECT fileID, domain, relativePath, flags, file FROM Files ORDER BY domain, relativePath";

/// The keyed archive of an MBFile, the only form in which a backup tells size and dates.
QByteArray fichaArchivada(const EntradaDeCopia &entrada)
{
    constexpr int usuarioMovil = 501;
    QVariantMap ficha{{u"$class"_s, QVariant::fromValue(Uid{3})},
                      {u"RelativePath"_s, QVariant::fromValue(Uid{2})},
                      {u"Size"_s, entrada.tamano},
                      {u"Mode"_s, entrada.modo},
                      {u"LastModified"_s, entrada.fecha},
                      {u"LastStatusChange"_s, entrada.fecha},
                      {u"Birth"_s, entrada.fecha},
                      {u"InodeNumber"_s, entrada.inodo},
                      {u"UserID"_s, usuarioMovil},
                      {u"GroupID"_s, usuarioMovil},
                      {u"Flags"_s, 0},
                      {u"ProtectionClass"_s, entrada.clase}};
    const QVariantMap clase{{u"$classname"_s, u"MBFile"_s}, {u"$classes"_s, QVariantList{u"MBFile"_s, u"NSObject"_s}}};
    QVariantList objetos{u"$null"_s, ficha, entrada.ruta, clase};
    if (!entrada.clave.isEmpty()) {
        ficha.insert(u"EncryptionKey"_s, QVariant::fromValue(Uid{4}));
        objetos[1] = ficha;
        objetos.append(QVariantMap{{u"$class"_s, QVariant::fromValue(Uid{5})}, {u"NS.data"_s, entrada.clave}});
        objetos.append(QVariantMap{{u"$classname"_s, u"NSMutableData"_s},
                                   {u"$classes"_s, QVariantList{u"NSMutableData"_s, u"NSData"_s, u"NSObject"_s}}});
    }
    return plistBinario(QVariantMap{{u"$archiver"_s, u"NSKeyedArchiver"_s},
                                    {u"$version"_s, 100000},
                                    {u"$top"_s, QVariantMap{{u"root"_s, QVariant::fromValue(Uid{1})}}},
                                    {u"$objects"_s, objetos}});
}

void ligarTexto(sqlite3_stmt *sentencia, int posicion, const QByteArray &texto)
{
    sqlite3_bind_text(sentencia, posicion, texto.constData(), int(texto.size()), SQLITE_TRANSIENT);
}

QString textoDe(sqlite3_stmt *sentencia, int columna)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(sentencia, columna)),
                             sqlite3_column_bytes(sentencia, columna));
}

FilaDeManifiesto filaDe(sqlite3_stmt *sentencia)
{
    FilaDeManifiesto fila{textoDe(sentencia, 0).toLatin1(),
                          textoDe(sentencia, 1),
                          textoDe(sentencia, 2),
                          sqlite3_column_int(sentencia, 3),
                          0,
                          0,
                          {}};
    const QByteArray archivo(static_cast<const char *>(sqlite3_column_blob(sentencia, 4)),
                             sqlite3_column_bytes(sentencia, 4));
    const QVariantList objetos = leerPlist(archivo).value_or(QVariant()).toMap()[u"$objects"_s].toList();
    const QVariantMap ficha = objetos.value(1).toMap();
    fila.tamano = ficha[u"Size"_s].toLongLong();
    fila.fecha = ficha[u"LastModified"_s].toLongLong();
    if (ficha.contains(u"EncryptionKey"_s))
        fila.clave =
            objetos.value(int(ficha[u"EncryptionKey"_s].value<Uid>().valor)).toMap()[u"NS.data"_s].toByteArray();
    return fila;
}

} // namespace

EscritorDeManifiesto::EscritorDeManifiesto(const QString &ruta)
{
    bien_ = sqlite3_open(QFile::encodeName(ruta).constData(), &base_) == SQLITE_OK &&
            sqlite3_exec(base_, esquema, nullptr, nullptr, nullptr) == SQLITE_OK &&
            sqlite3_exec(base_, "PRAGMA synchronous=OFF; BEGIN", nullptr, nullptr, nullptr) == SQLITE_OK &&
            sqlite3_prepare_v2(base_, insercion, -1, &insertar_, nullptr) == SQLITE_OK;
}

EscritorDeManifiesto::~EscritorDeManifiesto()
{
    sqlite3_finalize(insertar_);
    sqlite3_close(base_);
}

bool EscritorDeManifiesto::anadir(const EntradaDeCopia &entrada)
{
    if (!bien_)
        return false;
    const QByteArray ficha = fichaArchivada(entrada);
    sqlite3_reset(insertar_);
    ligarTexto(insertar_, 1, entrada.id);
    ligarTexto(insertar_, 2, entrada.dominio.toUtf8());
    ligarTexto(insertar_, 3, entrada.ruta.toUtf8());
    sqlite3_bind_int(insertar_, 4, entrada.tipo);
    sqlite3_bind_blob(insertar_, 5, ficha.constData(), int(ficha.size()), SQLITE_TRANSIENT);
    bien_ = sqlite3_step(insertar_) == SQLITE_DONE;
    return bien_;
}

bool EscritorDeManifiesto::cerrar()
{
    sqlite3_finalize(insertar_);
    insertar_ = nullptr;
    bien_ = bien_ && sqlite3_exec(base_, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK;
    bien_ = sqlite3_close(base_) == SQLITE_OK && bien_;
    base_ = nullptr;
    return bien_;
}

bool leerManifiesto(const QString &ruta, const std::function<void(const FilaDeManifiesto &)> &porFila)
{
    sqlite3 *base = nullptr;
    sqlite3_stmt *sentencia = nullptr;
    bool bien =
        sqlite3_open_v2(QFile::encodeName(ruta).constData(), &base, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK &&
        sqlite3_prepare_v2(base, consulta, -1, &sentencia, nullptr) == SQLITE_OK;
    int paso = SQLITE_DONE;
    while (bien && (paso = sqlite3_step(sentencia)) == SQLITE_ROW)
        porFila(filaDe(sentencia));
    bien = bien && paso == SQLITE_DONE;
    sqlite3_finalize(sentencia);
    sqlite3_close(base);
    return bien;
}

} // namespace simulado
