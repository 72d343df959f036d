#include "platform/Apariencia.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto servicio = u"org.freedesktop.portal.Desktop"_s;
const auto objeto = u"/org/freedesktop/portal/desktop"_s;
const auto interfaz = u"org.freedesktop.portal.Settings"_s;
const auto espacioDeApariencia = u"org.freedesktop.appearance"_s;
const auto claveDeColor = u"color-scheme"_s;

} // namespace

Apariencia::Apariencia(QObject *padre) : QObject(padre)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    bus.connect(servicio, objeto, interfaz, u"SettingChanged"_s, this,
                SLOT(ajusteCambiado(QString, QString, QDBusVariant)));
    auto peticion = QDBusMessage::createMethodCall(servicio, objeto, interfaz, u"Read"_s);
    peticion << espacioDeApariencia << claveDeColor;
    auto *espera = new QDBusPendingCallWatcher(bus.asyncCall(peticion), this);
    connect(espera, &QDBusPendingCallWatcher::finished, this, [this, espera] {
        const QDBusPendingReply<QDBusVariant> respuesta = *espera;
        espera->deleteLater();
        if (respuesta.isValid())
            aplicar(respuesta.value().variant());
    });
}

void Apariencia::ajusteCambiado(const QString &espacio, const QString &clave, const QDBusVariant &valor)
{
    if (espacio == espacioDeApariencia && clave == claveDeColor)
        aplicar(valor.variant());
}

void Apariencia::aplicar(const QVariant &valor)
{
    // The answer to Read is wrapped once more than the signal's value.
    const auto suelto = valor.canConvert<QDBusVariant>() ? valor.value<QDBusVariant>().variant() : valor;
    const bool nuevo = suelto.toUInt() == 1;
    if (nuevo == oscuro)
        return;
    oscuro = nuevo;
    emit cambio();
}

} // namespace vellora
