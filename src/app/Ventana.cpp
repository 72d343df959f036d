#include "app/Ventana.h"

#include "app/Bandeja.h"
#include "app/InstanciaUnica.h"
#include "app/TrasRefrescar.h"
#include "app/cli/Cancelacion.h"
#include "core/Herramientas.h"
#include "platform/Apariencia.h"
#include "platform/Llavero.h"
#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"

#include <QApplication>
#include <QFontDatabase>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <memory>
#include <thread>

namespace vellora
{

int abrirVentana(int &argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("vellora"));
    QApplication::setApplicationDisplayName(QStringLiteral("Vellora"));
    QApplication::setDesktopFileName(QStringLiteral("es.vellora.Vellora"));
    // The system's fonts are looked through while the rest is made.
    const std::jthread letras([] { QFontDatabase::hasFamily(QStringLiteral("Inter")); });
    InstanciaUnica unica;
    if (unica.yaHayOtra())
        return 0;
    prepararAspecto();

    Apariencia apariencia;
    Programa programa(
        [](const QString &udid) { return Llavero::consultar(udid, Llavero::Abrir::SinPreguntar).estado; });
    QObject::connect(&programa.modelo, &Modelo::refrescado, &programa,
                     [&programa](const std::optional<QString> &antes) { trasRefrescar(programa, antes); });
    QObject::connect(&programa.modelo, &Modelo::elegidoOtro, &programa,
                     [&programa] { trasRefrescar(programa, programa.modelo.seleccionado()->id); });

    QQmlApplicationEngine motor;
    auto *ventana = abrirVentanaPrincipal(motor, {programa, apariencia, Herramientas::queFalta()});
    if (ventana == nullptr)
        return 1;
    const auto verSiSeVe = [&programa, ventana] {
        const auto como = ventana->visibility();
        programa.modelo.ponEnVista(como != QWindow::Hidden && como != QWindow::Minimized);
    };
    QObject::connect(ventana, &QWindow::visibilityChanged, &programa, verSiSeVe);
    verSiSeVe();
    QObject::connect(&unica, &InstanciaUnica::llamada, ventana, [ventana] { traerAlFrente(*ventana); });
    // The end of the session, or of the terminal: what is under way ends in order, and leaves no working folder.
    const Cancelacion alPedirElFin;
    QObject::connect(&alPedirElFin, &Cancelacion::pedida, &app, &QCoreApplication::quit);
    // After the first picture: the bar can wait, the owner should not.
    std::unique_ptr<Bandeja> bandeja;
    QObject::connect(
        ventana, &QQuickWindow::frameSwapped, &programa,
        [&] { bandeja = std::make_unique<Bandeja>(programa, *ventana); }, Qt::SingleShotConnection);
    return QApplication::exec();
}

} // namespace vellora
