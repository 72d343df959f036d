#include "ui/Interfaz.h"

#include "backups/Copias.h"
#include "core/Preferencias.h"
#include "platform/Apariencia.h"
#include "session/Modelo.h"
#include "ui/componentes/Tema.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QVariant>

Q_IMPORT_QML_PLUGIN(Vellora_SesionPlugin)
Q_IMPORT_QML_PLUGIN(Vellora_ComponentesPlugin)
Q_IMPORT_QML_PLUGIN(Vellora_CopiasPlugin)
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

QQuickWindow *abrirVentanaPrincipal(QQmlApplicationEngine &motor, const ObjetosDeVentana &objetos)
{
    auto &tema = Tema::unico();
    tema.elegir(Tema::eleccionDe(Preferencias::texto(QStringLiteral("tema"))));
    tema.ponSistemaOscuro(objetos.apariencia.sistemaOscuro());
    QObject::connect(&objetos.apariencia, &Apariencia::cambio, &tema,
                     [&tema, &apariencia = objetos.apariencia] { tema.ponSistemaOscuro(apariencia.sistemaOscuro()); });

    motor.addImportPath(QStringLiteral("qrc:/qt/qml"));
    motor.setInitialProperties({{QStringLiteral("modelo"), QVariant::fromValue(&objetos.modelo)},
                                {QStringLiteral("copias"), QVariant::fromValue(&objetos.copias)},
                                {QStringLiteral("falta"), objetos.falta}});
    motor.load(QUrl(QStringLiteral("qrc:/qt/qml/Vellora/Ventana/VentanaPrincipal.qml")));
    const auto raices = motor.rootObjects();
    return raices.isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(raices.first());
}

} // namespace vellora
