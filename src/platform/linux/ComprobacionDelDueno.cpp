#include "platform/ComprobacionDelDueno.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QMap>
#include <QVariantMap>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

// The types of org.freedesktop.PolicyKit1.Authority.
struct Sujeto {
    QString clase;
    QVariantMap detalles;
};

struct Dictamen {
    bool autorizado = false;
    bool quedaPorPreguntar = false;
    QMap<QString, QString> detalles;
};

QDBusArgument &operator<<(QDBusArgument &argumento, const Sujeto &sujeto)
{
    argumento.beginStructure();
    argumento << sujeto.clase << sujeto.detalles;
    argumento.endStructure();
    return argumento;
}

const QDBusArgument &operator>>(const QDBusArgument &argumento, Sujeto &sujeto)
{
    argumento.beginStructure();
    argumento >> sujeto.clase >> sujeto.detalles;
    argumento.endStructure();
    return argumento;
}

QDBusArgument &operator<<(QDBusArgument &argumento, const Dictamen &dictamen)
{
    argumento.beginStructure();
    argumento << dictamen.autorizado << dictamen.quedaPorPreguntar << dictamen.detalles;
    argumento.endStructure();
    return argumento;
}

const QDBusArgument &operator>>(const QDBusArgument &argumento, Dictamen &dictamen)
{
    argumento.beginStructure();
    argumento >> dictamen.autorizado >> dictamen.quedaPorPreguntar >> dictamen.detalles;
    argumento.endStructure();
    return argumento;
}

} // namespace

Q_DECLARE_METATYPE(Sujeto)
Q_DECLARE_METATYPE(Dictamen)

namespace vellora
{

namespace
{

constexpr int esperaCorta = 3000; // milliseconds
constexpr uint sinPreguntar = 0;
constexpr uint preguntando = 1; // AllowUserInteraction

// Only root can put a socket there.
const auto zocalo = u"/run/dbus/system_bus_socket"_s;

QDBusConnection bus()
{
    static const auto nombre = u"vellora-sistema"_s;
    auto abierto = QDBusConnection(nombre);
    return abierto.isConnected() ? abierto : QDBusConnection::connectToBus(u"unix:path="_s + zocalo, nombre);
}

/// What a refusal to answer means.
ComprobacionDelDueno::Hay sinRespuesta(const QDBusMessage &fallo)
{
    static const QStringList noEsta{u"org.freedesktop.DBus.Error.ServiceUnknown"_s,
                                    u"org.freedesktop.DBus.Error.NameHasNoOwner"_s};
    const bool sinAccion = fallo.errorMessage().contains("is not registered"_L1);
    return noEsta.contains(fallo.errorName()) || sinAccion ? ComprobacionDelDueno::Hay::No
                                                           : ComprobacionDelDueno::Hay::SinRespuesta;
}

QDBusMessage peticion(const QString &accion, uint modo)
{
    qDBusRegisterMetaType<Sujeto>();
    qDBusRegisterMetaType<Dictamen>();
    qDBusRegisterMetaType<QMap<QString, QString>>();
    auto llamada =
        QDBusMessage::createMethodCall(u"org.freedesktop.PolicyKit1"_s, u"/org/freedesktop/PolicyKit1/Authority"_s,
                                       u"org.freedesktop.PolicyKit1.Authority"_s, u"CheckAuthorization"_s);
    const Sujeto yo{u"system-bus-name"_s, {{u"name"_s, bus().baseService()}}};
    llamada << QVariant::fromValue(yo) << accion << QVariant::fromValue(QMap<QString, QString>()) << modo << QString();
    return llamada;
}

ComprobacionDelDueno::Respuesta enClaro(const QDBusMessage &contestado)
{
    using Respuesta = ComprobacionDelDueno::Respuesta;
    if (contestado.type() != QDBusMessage::ReplyMessage || contestado.arguments().isEmpty())
        return Respuesta::No; // it went away in the midst of its question
    const auto dictamen = qdbus_cast<Dictamen>(contestado.arguments().constFirst());
    if (dictamen.autorizado)
        return Respuesta::Si;
    if (dictamen.detalles.value(u"polkit.dismissed"_s) == "true"_L1)
        return Respuesta::Cancelada;
    return dictamen.quedaPorPreguntar ? Respuesta::SinPreguntar : Respuesta::No;
}

} // namespace

void ComprobacionDelDueno::mirar(const AlSaber &alSaber)
{
    if (!QFileInfo::exists(zocalo))
        return alSaber(Hay::No);
    if (!bus().isConnected())
        return alSaber(Hay::SinRespuesta);
    const auto enCurso = bus().asyncCall(peticion(u"es.vellora.abrir"_s, sinPreguntar), esperaCorta);
    auto *espera = new QDBusPendingCallWatcher(enCurso, this);
    connect(espera, &QDBusPendingCallWatcher::finished, this, [alSaber](QDBusPendingCallWatcher *hecha) {
        hecha->deleteLater();
        const auto contestado = hecha->reply();
        // Whatever it says of this moment, there is something that says it.
        alSaber(contestado.type() == QDBusMessage::ReplyMessage ? Hay::Si : sinRespuesta(contestado));
    });
}

bool ComprobacionDelDueno::hayHuella()
{
    const auto fprint = u"net.reactivated.Fprint"_s;
    const auto llamar = [&](const QString &objeto, const QString &interfaz, const QString &metodo,
                            const QVariantList &argumentos) {
        auto llamada = QDBusMessage::createMethodCall(fprint, objeto, interfaz, metodo);
        llamada.setArguments(argumentos);
        return bus().call(llamada, QDBus::Block, esperaCorta);
    };
    const auto lector =
        llamar(u"/net/reactivated/Fprint/Manager"_s, u"net.reactivated.Fprint.Manager"_s, u"GetDefaultDevice"_s, {});
    if (lector.type() != QDBusMessage::ReplyMessage || lector.arguments().isEmpty())
        return false;
    const auto camino = qvariant_cast<QDBusObjectPath>(lector.arguments().constFirst()).path();
    // An empty name stands for whoever asks.
    const auto dedos = llamar(camino, u"net.reactivated.Fprint.Device"_s, u"ListEnrolledFingers"_s, {QString()});
    return dedos.type() == QDBusMessage::ReplyMessage && !dedos.arguments().isEmpty() &&
           !dedos.arguments().constFirst().toStringList().isEmpty();
}

void ComprobacionDelDueno::comprobar(const QString &accion, const AlResponder &alResponder)
{
    const auto enCurso = bus().asyncCall(peticion(accion, preguntando), std::numeric_limits<int>::max());
    auto *espera = new QDBusPendingCallWatcher(enCurso, this);
    connect(espera, &QDBusPendingCallWatcher::finished, this, [alResponder](QDBusPendingCallWatcher *hecha) {
        hecha->deleteLater();
        alResponder(enClaro(hecha->reply()));
    });
}

} // namespace vellora
