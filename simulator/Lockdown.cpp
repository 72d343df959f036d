#include "Flujo.h"
#include "Identidad.h"
#include "Plist.h"
#include "Servicios.h"
#include "Telefono.h"

#include <QUuid>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

/// What a phone tells to a computer that it does not (yet) trust.
constexpr QLatin1StringView clavesPublicas[] = {
    "ActivationState"_L1, "BasebandCertId"_L1,      "BuildVersion"_L1, "ChipID"_L1,          "CPUArchitecture"_L1,
    "DeviceClass"_L1,     "DeviceColor"_L1,         "DeviceName"_L1,   "DevicePublicKey"_L1, "HardwareModel"_L1,
    "HostAttached"_L1,    "PasswordProtected"_L1,   "ProductName"_L1,  "ProductType"_L1,     "ProductVersion"_L1,
    "ProtocolVersion"_L1, "SerialNumber"_L1,        "UniqueChipID"_L1, "UniqueDeviceID"_L1,  "WiFiAddress"_L1,
    "SIMStatus"_L1,       "TelephonyCapability"_L1,
};

/// One client of lockdownd. Each member answers one request; an absent answer ends the connection.
class Sesion
{
public:
    Sesion(Telefono &telefono, Flujo &flujo) : telefono_(telefono), flujo_(flujo) {}

    void servir()
    {
        while (const auto mensaje = recibirPlist(flujo_)) {
            const QVariantMap peticion = mensaje->toMap();
            const QString nombre = peticion[u"Request"_s].toString();
            telefono_.averias().contarPeticion(nombre);
            QVariantMap respuesta = responder(nombre, peticion);
            respuesta.insert(u"Request"_s, nombre);
            if (!enviarPlist(flujo_, respuesta) || !despues(nombre, respuesta))
                return;
        }
    }

private:
    static QVariantMap error(const QString &nombre) { return {{u"Error"_s, nombre}}; }

    QVariantMap responder(const QString &nombre, const QVariantMap &peticion)
    {
        if (const auto fallo = telefono_.averias().tomarFallo(nombre))
            return error(fallo->error.toString());
        if (nombre == "QueryType"_L1)
            return {{u"Type"_s, u"com.apple.mobile.lockdown"_s}};
        if (nombre == "GetValue"_L1)
            return leerValor(peticion);
        if (nombre == "SetValue"_L1 || nombre == "RemoveValue"_L1)
            return ponerValor(peticion);
        if (nombre == "Pair"_L1 || nombre == "ValidatePair"_L1 || nombre == "Unpair"_L1)
            return emparejar(nombre, peticion);
        if (nombre == "StartSession"_L1)
            return abrirSesion(peticion);
        if (nombre == "StopSession"_L1)
            return {};
        if (nombre == "StartService"_L1)
            return abrirServicio(peticion);
        if (nombre == "EnterRecovery"_L1 || nombre == "Goodbye"_L1 || nombre == "Activate"_L1)
            return {{u"Result"_s, u"Success"_s}};
        return error(u"InvalidRequest"_s);
    }

    QVariantMap leerValor(const QVariantMap &peticion)
    {
        const QString dominio = peticion[u"Domain"_s].toString();
        const QString clave = peticion[u"Key"_s].toString();
        QVariantMap respuesta;
        if (peticion.contains(u"Domain"_s))
            respuesta.insert(u"Domain"_s, dominio);
        if (peticion.contains(u"Key"_s))
            respuesta.insert(u"Key"_s, clave);
        if (const auto fallo = telefono_.averias().tomarFallo(u"GetValue:%1/%2"_s.arg(dominio, clave)))
            return error(fallo->error.toString());
        QVariantMap valores = telefono_.valores(dominio);
        if (!conSesion_)
            valores = soloPublicas(dominio, valores);
        if (clave.isEmpty()) {
            respuesta.insert(u"Value"_s, valores);
            return respuesta;
        }
        const auto it = valores.constFind(clave);
        if (it == valores.cend())
            return error(!conSesion_ && telefono_.valores(dominio).contains(clave) ? u"GetProhibited"_s
                                                                                   : u"MissingValue"_s);
        respuesta.insert(u"Value"_s, *it);
        return respuesta;
    }

    static QVariantMap soloPublicas(const QString &dominio, const QVariantMap &valores)
    {
        QVariantMap publicas;
        if (!dominio.isEmpty())
            return publicas;
        for (const auto &clave : clavesPublicas) {
            if (valores.contains(clave))
                publicas.insert(clave, valores[clave]);
        }
        return publicas;
    }

    QVariantMap ponerValor(const QVariantMap &peticion)
    {
        if (!conSesion_)
            return error(u"SetProhibited"_s);
        const QString clave = peticion[u"Key"_s].toString();
        const QVariant valor = peticion[u"Value"_s];
        telefono_.ponerValor(peticion[u"Domain"_s].toString(), clave, valor);
        return {{u"Key"_s, clave}, {u"Value"_s, valor}};
    }

    QVariantMap emparejar(const QString &nombre, const QVariantMap &peticion)
    {
        const QString host = peticion[u"PairRecord"_s].toMap()[u"HostID"_s].toString();
        Emparejamiento &emparejamiento = telefono_.emparejamiento();
        if (telefono_.bloqueado())
            return error(u"PasswordProtected"_s);
        if (nombre == "Unpair"_L1) {
            emparejamiento.desemparejar(host);
            return {};
        }
        if (nombre == "ValidatePair"_L1)
            return emparejamiento.conoceA(host) ? QVariantMap() : error(u"InvalidHostID"_s);
        if (const QString negativa = emparejamiento.emparejar(host); !negativa.isEmpty())
            return error(negativa);
        return {{u"EscrowBag"_s, Identidad::bolsaDeCustodia(telefono_.udid())}};
    }

    QVariantMap abrirSesion(const QVariantMap &peticion)
    {
        if (telefono_.bloqueado())
            return error(u"PasswordProtected"_s);
        if (!telefono_.emparejamiento().conoceA(peticion[u"HostID"_s].toString()))
            return error(u"InvalidHostID"_s);
        return {{u"SessionID"_s, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
                {u"EnableSessionSSL"_s, telefono_.ajustes().tls}};
    }

    QVariantMap abrirServicio(const QVariantMap &peticion)
    {
        const QString servicio = peticion[u"Service"_s].toString();
        telefono_.averias().contarPeticion(u"StartService:"_s + servicio);
        if (const auto fallo = telefono_.averias().tomarFallo(u"StartService:"_s + servicio))
            return error(fallo->error.toString());
        if (!conSesion_)
            return error(u"SessionInactive"_s);
        if (telefono_.bloqueado())
            return error(u"PasswordProtected"_s);
        if (!buscarServicio(servicio))
            return error(u"InvalidService"_s);
        const bool tls = telefono_.ajustes().tls;
        return {
            {u"Service"_s, servicio}, {u"Port"_s, telefono_.abrirPuerto(servicio, tls)}, {u"EnableServiceSSL"_s, tls}};
    }

    /// What changes on the stream once the answer is out.
    bool despues(const QString &nombre, const QVariantMap &respuesta)
    {
        if (nombre == "StopSession"_L1 && !respuesta.contains(u"Error"_s)) {
            conSesion_ = false;
            flujo_.quitarTls();
        }
        if (nombre == "StartSession"_L1 && !respuesta.contains(u"Error"_s)) {
            conSesion_ = true;
            return !respuesta[u"EnableSessionSSL"_s].toBool() || flujo_.activarTls(telefono_.identidad());
        }
        return nombre != "Goodbye"_L1;
    }

    Telefono &telefono_;
    Flujo &flujo_;
    bool conSesion_ = false;
};

} // namespace

void servirLockdown(Telefono &telefono, Flujo &flujo)
{
    Sesion(telefono, flujo).servir();
}

} // namespace simulado
