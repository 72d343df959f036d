#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// The simulated phone as a process of its own, for one test. While it lives, the tools started by this process (and by
/// what it starts) talk to it.
class TelefonoSimulado
{
public:
    /// `estado`: what simulator/README.md tells of --estado; empty for one connected, trusted phone.
    explicit TelefonoSimulado(const QJsonObject &estado = {});
    ~TelefonoSimulado();

    /// False, with the reason in `motivo`, when it did not come to listen.
    bool listo() const { return motivo_.isEmpty(); }
    QString motivo() const { return motivo_; }
    QString udid() const;

    /// Sends one order and gives its answer; an order that was refused, or not answered, gives {"bien": false, …}.
    QJsonObject orden(const QJsonObject &orden);
    /// The same for an order without further members.
    bool orden(const QString &nombre);

    /// Folder with what the phone of `udid` holds.
    QString contenido(const QString &udid) const;

private:
    QTemporaryDir carpeta;
    QProcess proceso;
    QString motivo_;
};

/// What a run of a program left.
struct Ejecucion {
    int codigo = -1;
    QByteArray salida;
    QByteArray palabras;
};

/// Runs a program to its end, at most `segundos`; the code is -1 when it had to be killed.
Ejecucion ejecutar(const QString &programa, const QStringList &argumentos, int segundos = 120);

/// Process identifiers whose command line holds `palabra`, this process left out.
QList<qint64> procesosCon(const QString &palabra);

/// SHA-1 of each file below a folder, by its relative path.
QMap<QString, QByteArray> arbol(const QString &carpeta);
