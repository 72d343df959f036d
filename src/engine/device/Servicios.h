#pragma once

#include "engine/device/Telefono.h"

#include <QStringList>

#include <libimobiledevice/diagnostics_relay.h>
#include <libimobiledevice/installation_proxy.h>
#include <libimobiledevice/misagent.h>
#include <libimobiledevice/property_list_service.h>
#include <libimobiledevice/sbservices.h>

/// The phone's smaller services, a client each. An object is one connection: one thread. What a service answers is
/// given as it comes; the names of its members are the phone's.
namespace vellora::motor
{

/// Installed apps (installation_proxy).
class Instalacion
{
public:
    static Resultado<Instalacion> abrir(const Telefono &telefono);
    /// One dictionary for each app; `tipo` "User", "System" or "Any", and of each app only these attributes
    /// (`CFBundleIdentifier`).
    Resultado<Plist> apps(const char *tipo, const QStringList &atributos) const;

private:
    using Cliente = std::unique_ptr<instproxy_client_private, Cierra<instproxy_client_free>>;
    explicit Instalacion(Cliente elCliente) : cliente(std::move(elCliente)) {}
    Cliente cliente;
};

/// Icons and wallpaper (springboardservices), as PNG.
class PantallaDeInicio
{
public:
    static Resultado<PantallaDeInicio> abrir(const Telefono &telefono);
    /// Absent when the phone has none for that app.
    std::optional<QByteArray> icono(const QString &app) const;
    std::optional<QByteArray> fondo() const;

private:
    using Cliente = std::unique_ptr<sbservices_client_private, Cierra<sbservices_client_free>>;
    explicit PantallaDeInicio(Cliente elCliente) : cliente(std::move(elCliente)) {}
    Cliente cliente;
};

/// The hardware registry and the switch (diagnostics_relay).
class Diagnostico
{
public:
    static Resultado<Diagnostico> abrir(const Telefono &telefono);
    /// An entry of the registry by its name (`AppleSmartBattery`); absent when there is none.
    std::optional<Plist> registro(const char *entrada) const;
    /// What the phone tells of one of its parts (`WiFi`, `GasGauge`); absent where it no longer does.
    std::optional<Plist> estado(const char *parte) const;
    /// Whether the phone took the order; it disconnects then.
    bool reiniciar() const;
    bool apagar() const;

private:
    using Cliente = std::unique_ptr<diagnostics_relay_client_private, Cierra<diagnostics_relay_client_free>>;
    explicit Diagnostico(Cliente elCliente) : cliente(std::move(elCliente)) {}
    Cliente cliente;
};

/// Configuration profiles (MCInstall), which the C library knows only as a service of property lists.
class Perfiles
{
public:
    static Resultado<Perfiles> abrir(const Telefono &telefono);
    /// The answer to GetProfileList: `OrderedIdentifiers`, `ProfileManifest` and `ProfileMetadata`.
    Resultado<Plist> lista() const;

private:
    using Cliente = std::unique_ptr<property_list_service_client_private, Cierra<property_list_service_client_free>>;
    explicit Perfiles(Cliente elCliente) : cliente(std::move(elCliente)) {}
    Cliente cliente;
};

/// Provisioning profiles of apps from outside the store (misagent).
class Aprovisionamiento
{
public:
    static Resultado<Aprovisionamiento> abrir(const Telefono &telefono);
    /// A list of CMS messages, as data.
    Resultado<Plist> perfiles() const;

private:
    using Cliente = std::unique_ptr<misagent_client_private, Cierra<misagent_client_free>>;
    explicit Aprovisionamiento(Cliente elCliente) : cliente(std::move(elCliente)) {}
    Cliente cliente;
};

} // namespace vellora::motor
