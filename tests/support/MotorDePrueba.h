#pragma once

#include "support/BaseDePrueba.h"
#include "support/TelefonoSimulado.h"

#include <QDateTime>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

/// A run of the engine: its notices by kind, the last of each, and everything else it said.
struct Corrida {
    int codigo = -1;
    QHash<QString, QJsonObject> avisos;
    QList<QJsonObject> fallos;
    QJsonArray carrete;
    QStringList lineas;
    QJsonObject operator[](const QString &tipo) const { return avisos.value(tipo); }
    QString todo() const
    {
        return lineas.join(u'\n') + u'\n' + avisos.value(QStringLiteral("error"))[QStringLiteral("motivo")].toString();
    }
};

/// Runs a command of the engine to its end. Needs BACKUP in the test's entry.
inline Corrida correrMotor(const QStringList &argumentos, bool confirmado = false)
{
    qputenv("CONFIRMADO", confirmado ? "SI" : "NO");
    const auto hecho = ejecutar(QStringLiteral(MOTOR), argumentos);
    Corrida corrida;
    corrida.codigo = hecho.codigo;
    for (const auto &renglon : QString::fromUtf8(hecho.salida).split(u'\n', Qt::SkipEmptyParts)) {
        auto objeto = QJsonDocument::fromJson(renglon.toUtf8()).object();
        if (const auto fichero = objeto[QStringLiteral("fichero_datos")].toString(); !fichero.isEmpty()) {
            objeto = QJsonDocument::fromJson(leerFichero(fichero)).object();
            QFile::remove(fichero);
        }
        const auto tipo = objeto[QStringLiteral("tipo")].toString();
        if (tipo.isEmpty())
            corrida.lineas << renglon;
        if (tipo == u"fallo")
            corrida.fallos << objeto;
        for (const auto &uno : objeto[QStringLiteral("lista")].toArray())
            corrida.carrete << uno;
        corrida.avisos[tipo] = objeto;
    }
    return corrida;
}

inline bool ponFecha(const QString &fichero, qint64 segundos)
{
    QFile abierto(fichero);
    return abierto.open(QIODevice::ReadWrite) &&
           abierto.setFileTime(QDateTime::fromSecsSinceEpoch(segundos), QFileDevice::FileModificationTime);
}
