#include "engine/device/Telefono.h"

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

QString motivoDe(lockdownd_error_t error)
{
    switch (error) {
    case LOCKDOWN_E_PASSWORD_PROTECTED:
    case LOCKDOWN_E_ESCROW_LOCKED:
        return u"El iPhone está bloqueado. Desbloquéalo con tu código y vuelve a intentarlo."_s;
    case LOCKDOWN_E_PAIRING_DIALOG_RESPONSE_PENDING:
        return u"El iPhone no me deja entrar. Desbloquéalo y, si te lo pregunta, toca «Confiar»."_s;
    case LOCKDOWN_E_USER_DENIED_PAIRING:
        return u"En el iPhone se ha tocado «No confiar». Desconéctalo, vuelve a conectarlo y toca «Confiar»."_s;
    case LOCKDOWN_E_INVALID_HOST_ID:
    case LOCKDOWN_E_MISSING_HOST_ID:
    case LOCKDOWN_E_INVALID_CONF:
    case LOCKDOWN_E_PAIRING_FAILED:
    case LOCKDOWN_E_INVALID_PAIR_RECORD:
    case LOCKDOWN_E_MISSING_PAIR_RECORD:
        return u"El iPhone ya no confía en este ordenador. Desconéctalo, vuelve a conectarlo y toca «Confiar»."_s;
    case LOCKDOWN_E_INVALID_SERVICE:
        return u"Este iPhone no ofrece lo que hace falta para eso."_s;
    case LOCKDOWN_E_MUX_ERROR:
    case LOCKDOWN_E_RECEIVE_TIMEOUT:
    case LOCKDOWN_E_SSL_ERROR:
        return u"El iPhone ha dejado de responder. Mira el cable y vuelve a intentarlo."_s;
    default:
        return u"El iPhone no ha querido hablar con este ordenador (lockdownd, %1)."_s.arg(error);
    }
}

} // namespace

std::optional<Plist> Sesion::valor(const char *dominio, const char *clave) const
{
    plist_t nodo = nullptr;
    const Plazo plazo;
    if (lockdownd_get_value(cliente.get(), dominio, clave, &nodo) != LOCKDOWN_E_SUCCESS || nodo == nullptr)
        return {};
    return Plist(nodo);
}

Resultado<Servicio> Sesion::servicio(const char *nombre) const
{
    lockdownd_service_descriptor_t descriptor = nullptr;
    const Plazo plazo;
    const auto error = lockdownd_start_service(cliente.get(), nombre, &descriptor);
    Servicio arrancado(descriptor); // the library leaves one without a port when it fails
    if (error != LOCKDOWN_E_SUCCESS)
        return Resultado<Servicio>::fallo(motivoDe(error));
    return arrancado;
}

Resultado<Telefono> Telefono::buscar(const QString &udid)
{
    idevice_t aparato = nullptr;
    const Plazo plazo;
    if (idevice_new(&aparato, udid.toUtf8().constData()) != IDEVICE_E_SUCCESS)
        return Resultado<Telefono>::fallo(u"No veo ese iPhone. Conéctalo con el cable y desbloquéalo."_s);
    return Telefono(Conexion(aparato));
}

Resultado<Sesion> Telefono::sesion() const
{
    if (Plazo::vencido())
        return Resultado<Sesion>::fallo(motivoDe(LOCKDOWN_E_RECEIVE_TIMEOUT));
    lockdownd_client_t cliente = nullptr;
    const Plazo plazo;
    const auto error = lockdownd_client_new_with_handshake(aparato(), &cliente, etiqueta);
    if (error != LOCKDOWN_E_SUCCESS)
        return Resultado<Sesion>::fallo(motivoDe(error));
    return Sesion(Sesion::Cliente(cliente));
}

QString Telefono::sinRespuesta(const char *servicio)
{
    return u"El iPhone no ha respondido (%1). Mira el cable y vuelve a intentarlo."_s.arg(
        QString::fromLatin1(servicio));
}

} // namespace vellora::motor
