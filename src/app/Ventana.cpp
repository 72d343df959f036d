#include "app/Ventana.h"

#include "app/TrasRefrescar.h"
#include "backups/Copias.h"
#include "core/Herramientas.h"
#include "platform/Apariencia.h"
#include "platform/Llavero.h"
#include "session/Modelo.h"
#include "ui/Interfaz.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>

namespace vellora
{

int abrirVentana(int &argc, char **argv)
{
    QGuiApplication app(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("vellora"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Vellora"));
    QGuiApplication::setDesktopFileName(QStringLiteral("es.vellora.Vellora"));
    prepararAspecto();

    Apariencia apariencia;
    Modelo modelo;
    QObject::connect(&modelo, &Modelo::refrescado, &modelo, [&modelo] { trasRefrescar(modelo); });
    // Without a store a password would be lost with the window: the owner's own setting on the phone decides then.
    Copias copias(modelo, [](const QString &udid) {
        return Llavero::disponible() ? std::optional(Llavero::hayClave(udid)) : std::nullopt;
    });

    QQmlApplicationEngine motor;
    if (!abrirVentanaPrincipal(motor, {modelo, copias, apariencia, Herramientas::queFalta()}))
        return 1;
    return QGuiApplication::exec();
}

} // namespace vellora
