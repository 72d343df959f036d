#include "engine/Ordenes.h"
#include "engine/device/Servicios.h"

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

const auto desconocido = u"Desconocido"_s;

/// "Movil Ejemplo" of the bundle that the operator gives its settings in, "com.apple.Movil_Ejemplo_es".
QString operadorDe(const QString &paquete)
{
    auto nombre = paquete.section(u'.', -1);
    const auto pais = nombre.lastIndexOf(u'_');
    if (pais > 0 && nombre.size() - pais == 3)
        nombre.truncate(pais);
    nombre.replace(u'_', u' ');
    const bool noEsDeNadie = nombre.isEmpty() || nombre.compare("unknown"_L1, Qt::CaseInsensitive) == 0 ||
                             nombre.compare("default"_L1, Qt::CaseInsensitive) == 0;
    return noEsDeNadie ? desconocido : nombre;
}

/// The first line that has an operator, of the two that a phone may hold.
QString operador(const Sesion &sesion)
{
    const auto lineas = sesion.valor(nullptr, "CarrierBundleInfoArray");
    if (!lineas)
        return desconocido;
    for (quint32 i = 0; i < lineas->raiz().tamano(); ++i) {
        auto nombre = operadorDe(lineas->raiz().en(i)["CFBundleIdentifier"].texto().value_or(QString()));
        if (nombre != desconocido)
            return nombre;
    }
    return desconocido;
}

/// In words, of what `ideviceinfo -k SIMStatus` prints.
QString estadoDeLaSim(const QString &estado)
{
    if (estado.endsWith("StatusReady"_L1))
        return u"Lista"_s;
    if (estado.endsWith("NotInserted"_L1))
        return u"No hay tarjeta SIM"_s;
    if (estado.contains("PINLocked"_L1) || estado.contains("PUKLocked"_L1))
        return u"Bloqueada con su PIN"_s;
    return estado.isEmpty() ? desconocido : u"No funciona"_s;
}

QString texto(const Sesion &sesion, const char *clave)
{
    const auto valor = sesion.valor(nullptr, clave);
    return valor ? valor->raiz().texto().value_or(QString()) : QString();
}

/// Absent when the phone does not tell.
std::optional<bool> wifiEncendida(const Telefono &telefono)
{
    const auto diagnostico = Diagnostico::abrir(telefono);
    const auto respuesta = diagnostico ? diagnostico->estado("WiFi") : std::nullopt;
    return respuesta ? respuesta->raiz()["WiFi"]["Active"].logico() : std::nullopt;
}

} // namespace

int red(const QStringList &argumentos, Avisos &avisar)
{
    const auto telefono = Telefono::buscar(argumentos[0]);
    if (!telefono)
        return avisar.error(telefono.motivo());
    const auto sesion = telefono->sesion();
    if (!sesion)
        return avisar.error(sesion.motivo());
    const auto avion = sesion->valor(nullptr, "AirplaneMode");
    avisar.avisar(u"red"_s, {{u"operador"_s, operador(*sesion)},
                             {u"telefono"_s, texto(*sesion, "PhoneNumber")},
                             {u"sim_estado"_s, estadoDeLaSim(texto(*sesion, "SIMStatus"))},
                             // What a phone keeps to itself is no reason to worry its owner.
                             {u"wifi_on"_s, wifiEncendida(*telefono).value_or(true)},
                             {u"avion"_s, avion && avion->raiz().logico().value_or(false)}});
    return 0;
}

} // namespace vellora::motor
