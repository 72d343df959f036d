#include "platform/Desvelador.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

QDBusMessage peticionDeInhibir(const QString &que)
{
    auto peticion = QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                                                   u"org.freedesktop.login1.Manager"_s, u"Inhibit"_s);
    peticion << que << u"Vellora"_s << u"Trabajo en marcha con el iPhone"_s << u"block"_s;
    return peticion;
}

} // namespace

struct Desvelador::Privado {
    bool despierto = false;
    QDBusUnixFileDescriptor cerrojo;
    std::unique_ptr<QDBusPendingCallWatcher> espera;

    void pedir(const QString &que)
    {
        espera =
            std::make_unique<QDBusPendingCallWatcher>(QDBusConnection::systemBus().asyncCall(peticionDeInhibir(que)));
        QObject::connect(espera.get(), &QDBusPendingCallWatcher::finished, espera.get(),
                         [this, que](QDBusPendingCallWatcher *hecha) { recibir(hecha, que); });
    }

    void recibir(QDBusPendingCallWatcher *hecha, const QString &que)
    {
        const QDBusPendingReply<QDBusUnixFileDescriptor> respuesta = *hecha;
        // deleteLater and not reset: the watcher is in the middle of emitting.
        espera.release()->deleteLater();
        if (respuesta.isValid())
            cerrojo = respuesta.value();
        else if (que != "idle"_L1)
            pedir(u"idle"_s); // a session without a seat may not hold back sleep, but may this
    }
};

Desvelador::Desvelador(QObject *padre) : QObject(padre), d(std::make_unique<Privado>()) {}

Desvelador::~Desvelador() = default;

void Desvelador::despierta()
{
    if (d->despierto)
        return;
    d->despierto = true;
    d->pedir(u"idle:sleep"_s);
}

void Desvelador::puedeDormir()
{
    d->despierto = false;
    d->espera.reset();
    d->cerrojo = QDBusUnixFileDescriptor();
}

} // namespace vellora
