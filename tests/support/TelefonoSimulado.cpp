#include "support/TelefonoSimulado.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace
{

/// Another for each process of tests, so that what one looks for among the machine's processes is its own.
QString udidDeMarta()
{
    const auto propio = QString::number(QCoreApplication::applicationPid(), 16).toUpper();
    return u"00008120-"_s + propio.rightJustified(10, u'0') + u"4C1E9A"_s;
}

QJsonObject soloMarta()
{
    return {{u"telefonos"_s, QJsonArray{QJsonObject{{u"udid"_s, udidDeMarta()},
                                                    {u"nombre"_s, u"iPhone de Marta"_s},
                                                    {u"producto"_s, u"iPhone15,2"_s},
                                                    {u"version"_s, u"17.5.1"_s}}}}};
}

} // namespace

TelefonoSimulado::TelefonoSimulado(const QJsonObject &estado)
{
    const auto enchufe = carpeta.filePath(u"usbmuxd"_s);
    QFile fichero(carpeta.filePath(u"estado.json"_s));
    if (!fichero.open(QIODevice::WriteOnly)) {
        motivo_ = fichero.errorString();
        return;
    }
    fichero.write(QJsonDocument(estado.isEmpty() ? soloMarta() : estado).toJson());
    fichero.close();
    proceso.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    proceso.start(QStringLiteral(SIMULADOR),
                  {u"--socket"_s, enchufe, u"--estado"_s, fichero.fileName(), u"--contenido"_s,
                   carpeta.filePath(u"contenido"_s), u"--tamano"_s, u"minimo"_s});
    QByteArray dicho;
    while (!dicho.contains("LISTO") && proceso.waitForReadyRead(60000))
        dicho += proceso.readAllStandardOutput();
    if (!dicho.contains("LISTO"))
        motivo_ = u"the simulated phone did not start: "_s + QString::fromUtf8(dicho) + proceso.errorString();
    qputenv("USBMUXD_SOCKET_ADDRESS", "UNIX:" + enchufe.toUtf8());
    qputenv("PYMOBILEDEVICE3_USBMUX", enchufe.toUtf8());
}

TelefonoSimulado::~TelefonoSimulado()
{
    proceso.closeWriteChannel();
    if (!proceso.waitForFinished(5000))
        proceso.kill();
    proceso.waitForFinished();
}

QString TelefonoSimulado::udid() const
{
    return udidDeMarta();
}

QJsonObject TelefonoSimulado::orden(const QJsonObject &orden)
{
    proceso.write(QJsonDocument(orden).toJson(QJsonDocument::Compact) + '\n');
    while (!proceso.canReadLine() && proceso.waitForReadyRead(20000)) {
    }
    const auto respuesta = QJsonDocument::fromJson(proceso.readLine()).object();
    return respuesta.isEmpty() ? QJsonObject{{u"bien"_s, false}, {u"motivo"_s, u"no answer"_s}} : respuesta;
}

bool TelefonoSimulado::orden(const QString &nombre)
{
    return orden(QJsonObject{{u"orden"_s, nombre}}).value(u"bien"_s).toBool();
}

QString TelefonoSimulado::contenido(const QString &udid) const
{
    return carpeta.filePath(u"contenido/"_s + udid);
}

Ejecucion ejecutar(const QString &programa, const QStringList &argumentos, int segundos)
{
    QProcess hijo;
    hijo.start(programa, argumentos);
    const bool termino = hijo.waitForFinished(segundos * 1000);
    if (!termino) {
        hijo.kill();
        hijo.waitForFinished();
    }
    const bool solo = termino && hijo.exitStatus() == QProcess::NormalExit;
    return {solo ? hijo.exitCode() : -1, hijo.readAllStandardOutput(), hijo.readAllStandardError()};
}

QList<qint64> procesosCon(const QString &palabra)
{
    QList<qint64> hallados;
    const auto entradas = QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto &entrada : entradas) {
        QFile orden(u"/proc/%1/cmdline"_s.arg(entrada));
        const auto numero = entrada.toLongLong();
        if (numero > 0 && numero != QCoreApplication::applicationPid() && orden.open(QIODevice::ReadOnly) &&
            orden.readAll().contains(palabra.toUtf8()))
            hallados << numero;
    }
    return hallados;
}

QMap<QString, QByteArray> arbol(const QString &carpeta)
{
    QMap<QString, QByteArray> ficheros;
    QDirIterator recorrido(carpeta, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (recorrido.hasNext()) {
        QFile fichero(recorrido.next());
        QCryptographicHash suma(QCryptographicHash::Sha1);
        if (fichero.open(QIODevice::ReadOnly))
            suma.addData(&fichero);
        ficheros[QDir(carpeta).relativeFilePath(fichero.fileName())] = suma.result();
    }
    return ficheros;
}
