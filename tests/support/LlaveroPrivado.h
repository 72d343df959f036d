#pragma once

#include <QProcess>
#include <QString>
#include <QTest>

/// A true secret service on the session bus of this process, unlocked and empty in a fresh home.
class LlaveroPrivado
{
public:
    LlaveroPrivado()
    {
        demonio.setProcessChannelMode(QProcess::SeparateChannels);
        demonio.start(
            QStringLiteral("gnome-keyring-daemon"),
            {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")});
        demonio.write("llavero de prueba");
        demonio.waitForBytesWritten();
        demonio.closeWriteChannel();
        demonio.waitForReadyRead(100); // lets the closing happen
        // A client that comes before the name is there would wake a second one.
        QProcess espera;
        espera.start(QStringLiteral("gdbus"),
                     {QStringLiteral("wait"), QStringLiteral("--session"), QStringLiteral("--timeout"),
                      QStringLiteral("10"), QStringLiteral("org.freedesktop.secrets")});
        espera.waitForFinished();
        listo_ = espera.exitStatus() == QProcess::NormalExit && espera.exitCode() == 0;
    }
    ~LlaveroPrivado()
    {
        demonio.kill();
        demonio.waitForFinished();
    }
    bool listo() const { return listo_; }

private:
    QProcess demonio;
    bool listo_ = false;
};
