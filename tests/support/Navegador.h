#pragma once

#include <QImage>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A true browser without a window, on pages of this computer.
namespace Navegador
{

/// What it prints; the page's own process has no network but this computer's.
inline QByteArray corre(const QStringList &opciones, const QString &pagina)
{
    const QTemporaryDir perfil;
    QProcess navegador;
    navegador.setProcessChannelMode(QProcess::SeparateChannels);
    navegador.start(QStringLiteral("chromium"),
                    QStringList{QStringLiteral("--headless"), QStringLiteral("--no-sandbox"),
                                QStringLiteral("--disable-gpu"), QStringLiteral("--disable-dev-shm-usage"),
                                QStringLiteral("--user-data-dir=") + perfil.path()} +
                        opciones + QStringList{QStringLiteral("file://") + pagina});
    navegador.waitForFinished(120'000);
    return navegador.readAllStandardOutput();
}

/// The page as the browser understood it.
inline QByteArray comoLaEntiende(const QString &pagina)
{
    return corre({QStringLiteral("--dump-dom")}, pagina);
}

inline QImage retrato(const QString &pagina, const QString &imagen, bool oscuro)
{
    corre({QStringLiteral("--window-size=900,700"), QStringLiteral("--hide-scrollbars"),
           QStringLiteral("--blink-settings=preferredColorScheme=") + (oscuro ? u'0' : u'1'),
           QStringLiteral("--screenshot=") + imagen},
          pagina);
    return QImage(imagen);
}

inline void imprime(const QString &pagina, const QString &pdf)
{
    corre({QStringLiteral("--no-pdf-header-footer"), QStringLiteral("--print-to-pdf=") + pdf}, pagina);
}

} // namespace Navegador
