#include "engine/device/Servicios.h"

#include <cstdlib>

namespace vellora::motor
{

namespace
{

/// A list or dictionary that the library handed over, or why there is none.
Resultado<Plist> respuesta(bool bien, plist_t nodo, const char *servicio)
{
    if (nodo == nullptr)
        return Resultado<Plist>::fallo(Telefono::sinRespuesta(servicio));
    Plist recibida(nodo);
    if (!bien)
        return Resultado<Plist>::fallo(Telefono::sinRespuesta(servicio));
    return recibida;
}

template <typename Clase, typename Cliente> Resultado<Clase> con(Resultado<Cliente> cliente, auto hacer)
{
    if (!cliente)
        return Resultado<Clase>::fallo(cliente.motivo());
    return hacer(*std::move(cliente));
}

std::optional<Plist> recibido(diagnostics_relay_error_t error, plist_t nodo)
{
    if (nodo == nullptr)
        return {};
    Plist dado(nodo);
    return error == DIAGNOSTICS_RELAY_E_SUCCESS ? std::optional(std::move(dado)) : std::nullopt;
}

std::optional<QByteArray> imagen(bool bien, char *datos, uint64_t largo)
{
    const std::unique_ptr<char, Cierra<std::free>> duena(datos);
    if (!bien || datos == nullptr || largo == 0)
        return {};
    return QByteArray(datos, static_cast<qsizetype>(largo));
}

} // namespace

Resultado<Instalacion> Instalacion::abrir(const Telefono &telefono)
{
    return con<Instalacion>(telefono.abrir<instproxy_client_private, instproxy_client_new, instproxy_client_free>(
                                "com.apple.mobile.installation_proxy"),
                            [](Cliente cliente) { return Instalacion(std::move(cliente)); });
}

Resultado<Plist> Instalacion::apps(const char *tipo, const QStringList &atributos) const
{
    const Plist opciones(instproxy_client_options_new());
    instproxy_client_options_add(opciones.nodo(), "ApplicationType", tipo, nullptr);
    plist_t pedidos = plist_new_array();
    for (const auto &atributo : atributos)
        plist_array_append_item(pedidos, plist_new_string(atributo.toUtf8().constData()));
    plist_dict_set_item(opciones.nodo(), "ReturnAttributes", pedidos);
    plist_t lista = nullptr;
    const Plazo plazo(Plazo::largo);
    const auto error = instproxy_browse(cliente.get(), opciones.nodo(), &lista);
    return respuesta(error == INSTPROXY_E_SUCCESS, lista, "installation_proxy");
}

Resultado<PantallaDeInicio> PantallaDeInicio::abrir(const Telefono &telefono)
{
    return con<PantallaDeInicio>(
        telefono.abrir<sbservices_client_private, sbservices_client_new, sbservices_client_free>(
            "com.apple.springboardservices"),
        [](Cliente cliente) { return PantallaDeInicio(std::move(cliente)); });
}

std::optional<QByteArray> PantallaDeInicio::icono(const QString &app) const
{
    char *datos = nullptr;
    uint64_t largo = 0;
    const Plazo plazo;
    const auto error = sbservices_get_icon_pngdata(cliente.get(), app.toUtf8().constData(), &datos, &largo);
    return imagen(error == SBSERVICES_E_SUCCESS, datos, largo);
}

std::optional<QByteArray> PantallaDeInicio::fondo() const
{
    char *datos = nullptr;
    uint64_t largo = 0;
    const Plazo plazo;
    const auto error = sbservices_get_home_screen_wallpaper_pngdata(cliente.get(), &datos, &largo);
    return imagen(error == SBSERVICES_E_SUCCESS, datos, largo);
}

Resultado<Diagnostico> Diagnostico::abrir(const Telefono &telefono)
{
    return con<Diagnostico>(
        telefono.abrir<diagnostics_relay_client_private, diagnostics_relay_client_new, diagnostics_relay_client_free>(
            "com.apple.mobile.diagnostics_relay"),
        [](Cliente cliente) { return Diagnostico(std::move(cliente)); });
}

std::optional<Plist> Diagnostico::registro(const char *entrada) const
{
    plist_t nodo = nullptr;
    const Plazo plazo;
    const auto error = diagnostics_relay_query_ioregistry_entry(cliente.get(), entrada, nullptr, &nodo);
    return recibido(error, nodo);
}

std::optional<Plist> Diagnostico::estado(const char *parte) const
{
    plist_t nodo = nullptr;
    const Plazo plazo;
    const auto error = diagnostics_relay_request_diagnostics(cliente.get(), parte, &nodo);
    return recibido(error, nodo);
}

bool Diagnostico::reiniciar() const
{
    const Plazo plazo;
    return diagnostics_relay_restart(cliente.get(), DIAGNOSTICS_RELAY_ACTION_FLAG_WAIT_FOR_DISCONNECT) ==
           DIAGNOSTICS_RELAY_E_SUCCESS;
}

bool Diagnostico::apagar() const
{
    const Plazo plazo;
    return diagnostics_relay_shutdown(cliente.get(), DIAGNOSTICS_RELAY_ACTION_FLAG_WAIT_FOR_DISCONNECT) ==
           DIAGNOSTICS_RELAY_E_SUCCESS;
}

Resultado<Perfiles> Perfiles::abrir(const Telefono &telefono)
{
    return con<Perfiles>(telefono.abrir<property_list_service_client_private, property_list_service_client_new,
                                        property_list_service_client_free>("com.apple.mobile.MCInstall"),
                         [](Cliente cliente) { return Perfiles(std::move(cliente)); });
}

Resultado<Plist> Perfiles::lista() const
{
    const Plist peticion(plist_new_dict());
    plist_dict_set_item(peticion.nodo(), "RequestType", plist_new_string("GetProfileList"));
    plist_t recibida = nullptr;
    const Plazo plazo;
    const bool bien =
        property_list_service_send_xml_plist(cliente.get(), peticion.nodo()) == PROPERTY_LIST_SERVICE_E_SUCCESS &&
        property_list_service_receive_plist(cliente.get(), &recibida) == PROPERTY_LIST_SERVICE_E_SUCCESS;
    auto dada = respuesta(bien, recibida, "MCInstall");
    if (dada && dada->raiz()["Status"].texto() != QStringLiteral("Acknowledged"))
        return Resultado<Plist>::fallo(Telefono::sinRespuesta("MCInstall"));
    return dada;
}

Resultado<Aprovisionamiento> Aprovisionamiento::abrir(const Telefono &telefono)
{
    return con<Aprovisionamiento>(
        telefono.abrir<misagent_client_private, misagent_client_new, misagent_client_free>("com.apple.misagent"),
        [](Cliente cliente) { return Aprovisionamiento(std::move(cliente)); });
}

Resultado<Plist> Aprovisionamiento::perfiles() const
{
    plist_t lista = nullptr;
    const Plazo plazo;
    const auto error = misagent_copy_all(cliente.get(), &lista);
    return respuesta(error == MISAGENT_E_SUCCESS, lista, "misagent");
}

} // namespace vellora::motor
