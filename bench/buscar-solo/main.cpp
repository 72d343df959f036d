#include "extraction/BuscadorGlobal.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

/// One search as the window makes it, in a program that is running already: buscar-solo WORD FOLDER. Tells its
/// milliseconds and what it found.
int main(int argc, char **argv)
{
    const QCoreApplication programa(argc, argv);
    const auto argumentos = QCoreApplication::arguments();
    QElapsedTimer reloj;
    reloj.start();
    const auto hallados = vellora::BuscadorGlobal::buscarEn(argumentos.value(1), argumentos.value(2), {});
    std::printf("%.3f %lld\n", static_cast<double>(reloj.nsecsElapsed()) / 1e6,
                static_cast<long long>(hallados.size()));
    return 0;
}
