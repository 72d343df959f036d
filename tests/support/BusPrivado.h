#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QProcess>
#include <QString>
#include <QTest>

/// A D-Bus daemon of its own, and stand-ins for the desktop's services on it (python3-dbusmock). Serves as both buses
/// of this process, so it must be made before either is first used.
class BusPrivado
{
public:
    BusPrivado()
    {
        QStringList argumentos{QStringLiteral("--session"), QStringLiteral("--nofork"),
                               QStringLiteral("--print-address")};
        if (esElDelSistema())
            argumentos << QStringLiteral("--address=unix:path=/run/dbus/system_bus_socket");
        demonio.start(QStringLiteral("dbus-daemon"), argumentos);
        if (demonio.waitForReadyRead(10000)) {
            const auto direccion = demonio.readLine().trimmed();
            qputenv("DBUS_SESSION_BUS_ADDRESS", direccion);
            qputenv("DBUS_SYSTEM_BUS_ADDRESS", direccion);
        }
    }
    /// Whether it stands in the system bus's own place, in a mount namespace of the test's (con-bus-del-sistema).
    static bool esElDelSistema() { return qEnvironmentVariableIsSet("BUS_DEL_SISTEMA"); }
    ~BusPrivado()
    {
        for (auto *proceso : {&servicio, &demonio}) {
            proceso->kill();
            proceso->waitForFinished();
        }
    }

    /// Starts a stand-in and waits until `nombre` is on the bus. What it is asked is told by `peticiones`.
    bool servir(const QString &nombre, const QStringList &argumentos)
    {
        servicio.kill();
        servicio.waitForFinished();
        servicio.setProcessChannelMode(QProcess::MergedChannels);
        servicio.start(QStringLiteral("/usr/bin/python3"),
                       QStringList{QStringLiteral("-u"), QStringLiteral("-m"), QStringLiteral("dbusmock")} +
                           argumentos);
        return QTest::qWaitFor([&] { return QDBusConnection::sessionBus().interface()->isServiceRegistered(nombre); },
                               15000);
    }
    void retirar()
    {
        servicio.kill();
        servicio.waitForFinished();
    }
    /// Adds a method to the stand-in: `codigo` is Python that sets `ret`.
    bool metodo(const QString &nombre, const QString &objeto, const QString &interfaz, const QStringList &partes)
    {
        QDBusInterface doble(nombre, objeto, QStringLiteral("org.freedesktop.DBus.Mock"));
        return doble.call(QStringLiteral("AddMethod"), interfaz, partes[0], partes[1], partes[2], partes[3]).type() !=
               QDBusMessage::ErrorMessage;
    }
    QString peticiones()
    {
        dicho += servicio.readAll();
        return QString::fromUtf8(dicho);
    }

private:
    QProcess demonio;
    QProcess servicio;
    QByteArray dicho;
};
