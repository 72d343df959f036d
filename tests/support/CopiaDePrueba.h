#pragma once

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sqlite3.h>

/// A small phone and backups of it, written by the simulated phone's own program. Needs BACKUP in the test's entry.
class CopiaDePrueba
{
public:
    /// The contents of the phone. Files of the backup come from here.
    QString telefono() const { return carpeta.filePath(QStringLiteral("telefono")); }
    QString ruta(const QString &nombre) const { return carpeta.filePath(nombre); }

    bool crearTelefono() const
    {
        return QProcess::execute(QStringLiteral(GENERADOR), {QStringLiteral("--carpeta"), telefono(),
                                                             QStringLiteral("--tamano"), QStringLiteral("minimo")}) ==
               0;
    }
    /// With an empty password the backup is not encrypted.
    bool copiar(const QString &nombre, const QString &clave, int rondas = 100) const
    {
        return copiarTelefono(telefono(), ruta(nombre), clave, rondas);
    }
    /// The backup of a phone whose contents stand there, into a folder that is made.
    static bool copiarTelefono(const QString &telefono, const QString &copia, const QString &clave = {},
                               int rondas = 100)
    {
        QDir().mkpath(QFileInfo(copia).path());
        QStringList argumentos{QStringLiteral("--telefono"), telefono, QStringLiteral("--copia"), copia};
        if (!clave.isEmpty())
            argumentos << QStringLiteral("--clave") << clave << QStringLiteral("--rondas") << QString::number(rondas);
        return QProcess::execute(QStringLiteral(COPIA_SIMULADA), argumentos) == 0;
    }

    /// Every file under a folder by its relative name, working files and hidden ones too.
    static QMap<QString, QByteArray> contenido(const QString &carpeta)
    {
        QMap<QString, QByteArray> todo;
        QDirIterator recorrido(carpeta, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
        while (recorrido.hasNext()) {
            QFile fichero(recorrido.next());
            todo[fichero.fileName().mid(carpeta.size() + 1)] =
                fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray("(ilegible)");
        }
        return todo;
    }

    /// Runs statements on a database; false when one of them is refused.
    static bool sql(const QString &base, const QByteArray &sentencias)
    {
        sqlite3 *abierta = nullptr;
        const bool bien = sqlite3_open(base.toUtf8().constData(), &abierta) == SQLITE_OK &&
                          sqlite3_exec(abierta, sentencias.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
        sqlite3_close(abierta);
        return bien;
    }

private:
    QTemporaryDir carpeta;
};
