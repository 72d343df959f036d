#pragma once

#include "InventarioDeCopia.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace simulado
{

/// Writes Manifest.db: Files(fileID, domain, relativePath, flags, file) and Properties(key, value).
class EscritorDeManifiesto
{
public:
    /// `ruta` must not exist yet.
    explicit EscritorDeManifiesto(const QString &ruta);
    ~EscritorDeManifiesto();
    EscritorDeManifiesto(const EscritorDeManifiesto &) = delete;
    EscritorDeManifiesto &operator=(const EscritorDeManifiesto &) = delete;

    bool anadir(const EntradaDeCopia &entrada);
    /// False when anything failed since the beginning.
    bool cerrar();

private:
    bool bien_ = true;
    sqlite3 *base_ = nullptr;
    sqlite3_stmt *insertar_ = nullptr;
};

/// A row of Manifest.db, as far as the phone reads it.
struct FilaDeManifiesto {
    QByteArray id;
    QString dominio;
    QString ruta;
    int tipo = 0;
    qint64 tamano = 0;
    qint64 fecha = 0;
    QByteArray clave; ///< class and wrapped key of an encrypted file
};
/// Calls for each row. False when it is no such database.
bool leerManifiesto(const QString &ruta, const std::function<void(const FilaDeManifiesto &)> &porFila);

} // namespace simulado
