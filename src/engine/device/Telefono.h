#pragma once

#include "core/Plist.h"
#include "core/Resultado.h"
#include "engine/device/Plazo.h"

#include <libimobiledevice/libimobiledevice.h>
#include <libimobiledevice/lockdown.h>
#include <memory>

namespace vellora::motor
{

/// Ends an object of the C library by the library's own function.
template <auto cerrar> struct Cierra {
    template <typename Privado> void operator()(Privado *cosa) const
    {
        const Plazo plazo; // some of them say goodbye and wait for the answer
        cerrar(cosa);
    }
};

/// The name by which lockdownd and the services know this program.
constexpr auto etiqueta = "vellora";

/// Where lockdownd left a service listening. Good for one connection.
using Servicio = std::unique_ptr<lockdownd_service_descriptor, Cierra<lockdownd_service_descriptor_free>>;

/// One session with lockdownd. Short-lived: the phone closes those that stay idle. One thread.
class Sesion
{
public:
    /// What the phone says of itself; null for the general domain, and for every key of a domain. Absent when it says
    /// nothing. Keys are those that `ideviceinfo` prints.
    std::optional<Plist> valor(const char *dominio, const char *clave) const;
    /// Starts a service by its name (`com.apple.afc`).
    Resultado<Servicio> servicio(const char *nombre) const;

private:
    friend class Telefono;
    using Cliente = std::unique_ptr<lockdownd_client_private, Cierra<lockdownd_client_free>>;
    explicit Sesion(Cliente elCliente) : cliente(std::move(elCliente)) {}

    Cliente cliente;
};

/// A phone by cable. Every service opens a connection of its own, so that threads may share a phone but not a service.
/// No call waits longer for the phone than `Plazo` says, and after one that did all others fail at once.
class Telefono
{
public:
    /// Fails with a sentence when no phone of that identifier is connected, or usbmuxd is not there.
    static Resultado<Telefono> buscar(const QString &udid);

    /// Fails with a sentence when the phone is locked or does not trust this computer. A phone that never saw this
    /// computer shows the question of trust.
    Resultado<Sesion> sesion() const;

    idevice_t aparato() const { return conexion.get(); }

    /// A client of the service of that name. `nuevo` is the library's constructor, whose every error is negative or
    /// positive but never zero.
    template <typename Privado, auto nuevo, auto cerrar>
    Resultado<std::unique_ptr<Privado, Cierra<cerrar>>> abrir(const char *nombre) const
    {
        using Cliente = std::unique_ptr<Privado, Cierra<cerrar>>;
        const auto abierta = sesion();
        if (!abierta)
            return Resultado<Cliente>::fallo(abierta.motivo());
        const auto servicio = abierta->servicio(nombre);
        if (!servicio)
            return Resultado<Cliente>::fallo(servicio.motivo());
        Privado *cliente = nullptr;
        const Plazo plazo;
        if (nuevo(aparato(), servicio->get(), &cliente) != 0)
            return Resultado<Cliente>::fallo(sinRespuesta(nombre));
        return Cliente(cliente);
    }

    static QString sinRespuesta(const char *servicio);

private:
    using Conexion = std::unique_ptr<idevice_private, Cierra<idevice_free>>;
    explicit Telefono(Conexion laConexion) : conexion(std::move(laConexion)) {}

    Conexion conexion;
};

} // namespace vellora::motor
