#include "ui/Interfaz.h"

#include "platform/Apariencia.h"
#include "ui/componentes/Tema.h"
#include "ui/sesion/FotosDeContactos.h"
#include "ui/sesion/ImagenesDeFotos.h"
#include "ui/sesion/Programa.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QScreen>
#include <QVariant>

#include <algorithm>

Q_IMPORT_QML_PLUGIN(Vellora_SesionPlugin)
Q_IMPORT_QML_PLUGIN(Vellora_ComponentesPlugin)
Q_IMPORT_QML_PLUGIN(Vellora_CopiasPlugin)
Q_IMPORT_QML_PLUGIN(Vellora_DatosPlugin)
Q_IMPORT_QML_PLUGIN(Vellora_FotosPlugin)
Q_IMPORT_QML_PLUGIN(Vellora_VentanaPlugin)

namespace vellora
{

void prepararAspecto()
{
    QFont letra;
    letra.setFamily(QStringLiteral("Inter"));
    letra.setPixelSize(14);
    QGuiApplication::setFont(letra);
}

namespace
{

/// Follows the owner's choice and the desktop's.
void vestir(const ObjetosDeVentana &objetos)
{
    auto &tema = Tema::unico();
    auto &ajustes = objetos.programa.ajustes;
    const auto elegir = [&tema, &ajustes] {
        tema.elegir(Tema::eleccionDe(ajustes.tema()));
    };
    elegir();
    QObject::connect(&ajustes, &AjustesDeVentana::cambio, &tema, elegir);
    tema.ponSistemaOscuro(objetos.apariencia.sistemaOscuro());
    QObject::connect(&objetos.apariencia, &Apariencia::cambio, &tema,
                     [&tema, &apariencia = objetos.apariencia] { tema.ponSistemaOscuro(apariencia.sistemaOscuro()); });
}

/// Where it stood last time, as far as a screen still shows that place; and remembers where it stands.
void colocar(QQuickWindow &ventana, AjustesDeVentana &ajustes)
{
    const auto lugar = ajustes.lugar();
    const auto pantallas = QGuiApplication::screens();
    const bool seVe = std::any_of(pantallas.begin(), pantallas.end(), [&lugar](const QScreen *una) {
        return una->availableGeometry().contains(lugar.center());
    });
    if (lugar.isValid() && seVe)
        ventana.setGeometry(lugar.x(), lugar.y(), std::max(lugar.width(), ventana.minimumWidth()),
                            std::max(lugar.height(), ventana.minimumHeight()));
    QObject::connect(&ventana, &QWindow::visibleChanged, &ajustes, [&ventana, &ajustes](bool visible) {
        if (!visible && ventana.windowState() == Qt::WindowNoState)
            ajustes.ponLugar(ventana.geometry());
    });
}

} // namespace

QQuickWindow *abrirVentanaPrincipal(QQmlApplicationEngine &motor, const ObjetosDeVentana &objetos)
{
    vestir(objetos);
    // Before the views: where there is nobody to ask, the lock's own is never made.
    if (!objetos.programa.cerradura.abierta())
        objetos.programa.cerradura.abrir();
    motor.addImageProvider(QStringLiteral("contactos"), new FotosDeContactos(objetos.programa.contactos));
    motor.addImageProvider(QStringLiteral("fotos"), new ImagenesDeFotos);
    motor.addImportPath(QStringLiteral("qrc:/qt/qml"));
    motor.setInitialProperties({{QStringLiteral("programa"), QVariant::fromValue(&objetos.programa)},
                                {QStringLiteral("falta"), objetos.falta}});
    motor.load(QUrl(QStringLiteral("qrc:/qt/qml/Vellora/Ventana/VentanaPrincipal.qml")));
    const auto raices = motor.rootObjects();
    auto *ventana = raices.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(raices.first());
    if (ventana == nullptr)
        return nullptr;
    colocar(*ventana, objetos.programa.ajustes);
    ventana->show();
    return ventana;
}

void traerAlFrente(QQuickWindow &ventana)
{
    if (!ventana.isVisible() || ventana.visibility() == QWindow::Minimized)
        ventana.showNormal();
    ventana.raise();
    ventana.requestActivate();
}

} // namespace vellora
