#include "Fotogramas.h"
#include "platform/Apariencia.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"

#include <QApplication>
#include <QDir>
#include <QTimer>

#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;
using namespace vellora;

namespace
{

constexpr int fotogramas = 600;
constexpr double pasoDeLaRueda = 400; // points a frame: faster than anybody looks

/// Lets things happen until it is so; false after a minute.
bool espera(const std::function<bool()> &cosa)
{
    QElapsedTimer reloj;
    reloj.start();
    while (!cosa() && reloj.elapsed() < 60'000)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
    return cosa();
}

QQuickItem *rejilla(QQuickItem *desde)
{
    if (desde->property("cellWidth").isValid() && desde->property("reuseItems").isValid())
        return desde;
    for (auto *hijo : desde->childItems()) {
        if (auto *hallada = rejilla(hijo))
            return hallada;
    }
    return nullptr;
}

qsizetype miniaturas()
{
    return QDir(Galeria::carpeta()).entryList({u"*.jpg"_s}, QDir::Files).size();
}

} // namespace

/// carrete-solo: photos of the roll of the phone that is there, milliseconds to their first row, to sixteen small
/// pictures, to a usual and to the longest frame while scrolling, and MiB that they took.
int main(int argc, char **argv)
{
    const QApplication app(argc, argv);
    prepararAspecto();
    Apariencia apariencia;
    Programa programa([](const QString &) { return Llavero::Estado::Hallada; });
    QQmlApplicationEngine motor;
    auto *ventana = abrirVentanaPrincipal(motor, {programa, apariencia, {}});
    // Wakes the waits that nothing else would.
    QTimer pulso;
    pulso.start(5);
    if (!espera([&] { return programa.modelo.seleccionado().has_value(); }))
        return 1;
    programa.modelo.marcarConocido(programa.modelo.seleccionado()->id);
    Fotogramas::uno(*ventana);
    const auto antes = Fotogramas::residente();
    QElapsedTimer reloj;
    reloj.start();
    programa.seleccion.abrir();
    if (!espera([&] { return programa.seleccion.rowCount() > 0; }))
        return 1;
    Fotogramas::uno(*ventana);
    const auto primera = Fotogramas::milisegundos(reloj);
    reloj.restart();
    if (!espera([] { return miniaturas() >= Galeria::deUnaVez; }))
        return 1;
    const auto conFotos = Fotogramas::milisegundos(reloj);
    const auto tiempos = Fotogramas::recorriendo(*ventana, rejilla(ventana->contentItem()), pasoDeLaRueda, fotogramas);
    std::printf("%d %.0f %.0f %.2f %.2f %.0f\n", programa.seleccion.rowCount(), primera, conFotos,
                tiempos.empty() ? -1 : tiempos[tiempos.size() / 2], tiempos.empty() ? -1 : tiempos.back(),
                Fotogramas::residente() - antes);
    return 0;
}
