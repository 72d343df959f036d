#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <vector>

/// What the measures on a window share.
namespace Fotogramas
{

inline double milisegundos(const QElapsedTimer &reloj)
{
    return static_cast<double>(reloj.nsecsElapsed()) / 1e6;
}

/// MiB in memory, now.
inline double residente()
{
    QFile estado(QStringLiteral("/proc/self/status"));
    if (!estado.open(QIODevice::ReadOnly))
        return 0;
    for (const auto &linea : estado.readAll().split('\n')) {
        if (linea.startsWith("VmRSS:"))
            return linea.simplified().split(' ').value(1).toDouble() / 1024;
    }
    return 0;
}

inline void uno(QQuickWindow &ventana)
{
    QEventLoop espera;
    QObject::connect(&ventana, &QQuickWindow::frameSwapped, &espera, &QEventLoop::quit);
    ventana.update();
    espera.exec();
}

/// Milliseconds of each of so many frames while what scrolls goes by `paso` points a frame, the shortest first.
inline std::vector<double> recorriendo(QQuickWindow &ventana, QQuickItem *lista, double paso, int cuantos)
{
    std::vector<double> tiempos;
    QElapsedTimer reloj;
    for (int i = 0; lista != nullptr && i < cuantos; ++i) {
        reloj.restart();
        lista->setProperty("contentY", lista->property("contentY").toDouble() + paso);
        uno(ventana);
        tiempos.push_back(milisegundos(reloj));
    }
    std::sort(tiempos.begin(), tiempos.end());
    return tiempos;
}

} // namespace Fotogramas
