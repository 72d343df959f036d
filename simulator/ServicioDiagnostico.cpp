#include "Flujo.h"
#include "Servicios.h"
#include "Telefono.h"

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

constexpr int reinicioMs = 1500;

/// The battery as the phone's hardware tree tells it. mA, mV, hundredths of a degree; minutes to full or to empty.
QVariantMap bateria(const Telefono &telefono)
{
    constexpr int capacidadDeFabrica = 3200;
    const QVariantMap valores = telefono.valores(u"com.apple.mobile.battery"_s);
    const auto nivel = valores.value(u"BatteryCurrentCapacity"_s, 82).toInt();
    const bool cargando = valores.value(u"BatteryIsCharging"_s, true).toBool();
    constexpr int capacidad = 2912;
    return {{u"CurrentCapacity"_s, nivel},
            {u"MaxCapacity"_s, 100},
            {u"DesignCapacity"_s, capacidadDeFabrica},
            {u"NominalChargeCapacity"_s, capacidad},
            {u"AppleRawMaxCapacity"_s, capacidad},
            {u"AppleRawCurrentCapacity"_s, capacidad * nivel / 100},
            {u"CycleCount"_s, 214},
            {u"Temperature"_s, 2890},
            {u"Voltage"_s, 3600 + nivel * 7},
            {u"InstantAmperage"_s, cargando ? 1480 : -320},
            {u"Amperage"_s, cargando ? 1450 : -310},
            {u"IsCharging"_s, cargando},
            {u"ExternalConnected"_s, true},
            {u"FullyCharged"_s, nivel == 100},
            {u"AtCriticalLevel"_s, nivel < 3},
            {u"AtWarnLevel"_s, nivel < 10},
            {u"TimeRemaining"_s, cargando ? (100 - nivel) * 2 : nivel * 6},
            {u"Serial"_s, u"F8Y2467K1QR0000D7"_s}};
}

QVariantMap mobileGestalt(const Telefono &telefono, const QVariantList &claves)
{
    const QVariantMap general = telefono.valores({});
    QVariantMap propios{{u"PasswordConfigured"_s, general.value(u"PasswordConfigured"_s, true)}};
    QVariantMap respuesta{{u"Status"_s, u"Success"_s}};
    for (const QVariant &clave : claves) {
        const QString nombre = clave.toString();
        if (propios.contains(nombre))
            respuesta.insert(nombre, propios[nombre]);
        else if (general.contains(nombre))
            respuesta.insert(nombre, general[nombre]);
    }
    return {{u"MobileGestalt"_s, respuesta}};
}

QVariantMap todo(const Telefono &telefono)
{
    const QVariantMap pila = bateria(telefono);
    return {{u"GasGauge"_s, QVariantMap{{u"CycleCount"_s, pila[u"CycleCount"_s]},
                                        {u"DesignCapacity"_s, pila[u"DesignCapacity"_s]},
                                        {u"FullChargeCapacity"_s, pila[u"NominalChargeCapacity"_s]},
                                        {u"Status"_s, u"Success"_s}}},
            {u"WiFi"_s, QVariantMap{{u"Active"_s, true}, {u"Status"_s, u"Success"_s}}}};
}

QVariantMap exito(const QVariantMap &diagnostico = {})
{
    QVariantMap respuesta{{u"Status"_s, u"Success"_s}};
    if (!diagnostico.isEmpty())
        respuesta.insert(u"Diagnostics"_s, diagnostico);
    return respuesta;
}

QVariantMap responder(Telefono &telefono, const QString &nombre, const QVariantMap &peticion)
{
    if (const auto fallo = telefono.averias().tomarFallo(nombre))
        return {{u"Status"_s, fallo->error.toString()}};
    if (nombre == "IORegistry"_L1) {
        const bool esBateria = peticion[u"EntryName"_s].toString() == "AppleSmartBattery"_L1 ||
                               peticion[u"EntryClass"_s].toString() == "IOPMPowerSource"_L1;
        return exito({{u"IORegistry"_s, esBateria ? bateria(telefono) : QVariantMap()}});
    }
    if (nombre == "MobileGestalt"_L1)
        return exito(mobileGestalt(telefono, peticion[u"MobileGestaltKeys"_s].toList()));
    if (nombre == "All"_L1 || nombre == "GasGauge"_L1 || nombre == "WiFi"_L1)
        return exito(todo(telefono));
    if (nombre == "Restart"_L1 || nombre == "Shutdown"_L1 || nombre == "Sleep"_L1 || nombre == "Goodbye"_L1)
        return exito();
    return {{u"Status"_s, u"UnknownRequest"_s}};
}

} // namespace

void servirDiagnostico(Telefono &telefono, Flujo &flujo)
{
    QString pendiente; // the phone goes down when the client has said goodbye, not in the middle of its talk
    while (const auto mensaje = recibirPlist(flujo)) {
        const QVariantMap peticion = mensaje->toMap();
        const QString nombre = peticion[u"Request"_s].toString();
        telefono.averias().contarPeticion(u"diag:"_s + nombre);
        const QVariantMap respuesta = responder(telefono, nombre, peticion);
        if (respuesta[u"Status"_s].toString() == "Success"_L1 &&
            (nombre == "Restart"_L1 || nombre == "Shutdown"_L1 || nombre == "Sleep"_L1)) {
            pendiente = nombre;
            telefono.averias().contarEvento(nombre.toLower());
        }
        if (!enviarPlist(flujo, respuesta) || nombre == "Goodbye"_L1)
            break;
    }
    if (pendiente == "Restart"_L1)
        telefono.reiniciar(reinicioMs);
    else if (pendiente == "Shutdown"_L1)
        telefono.desconectar();
}

} // namespace simulado
