#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <sqlite3.h>

/// Writes a database with these statements, its folders made. The rows are the test's own.
inline bool escribirBase(const QString &fichero, const QByteArray &sentencias)
{
    QDir().mkpath(QFileInfo(fichero).path());
    sqlite3 *base = nullptr;
    const bool bien = sqlite3_open(fichero.toUtf8().constData(), &base) == SQLITE_OK &&
                      sqlite3_exec(base, sentencias.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
    if (!bien)
        qWarning("%s", sqlite3_errmsg(base));
    sqlite3_close(base);
    return bien;
}

inline bool escribirFichero(const QString &nombre, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(nombre).path());
    QFile fichero(nombre);
    return fichero.open(QIODevice::WriteOnly) && fichero.write(bytes) == bytes.size();
}

inline QByteArray leerFichero(const QString &nombre)
{
    QFile fichero(nombre);
    return fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray("(no está)");
}
