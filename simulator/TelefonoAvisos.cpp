#include "Flujo.h"
#include "Telefono.h"

#include <chrono>

using namespace Qt::StringLiterals;

// The phone's notices and its passcode question, and what tests ask it to remember.
namespace simulado
{

void Telefono::avisar(const QString &nombre)
{
    averias_.contarEvento(u"aviso "_s + nombre);
    const std::lock_guard cerrojo(mutex_);
    for (const auto &oyente : std::as_const(oyentes_))
        oyente(nombre);
}

int Telefono::escucharAvisos(std::function<void(const QString &)> oyente)
{
    const std::lock_guard cerrojo(mutex_);
    oyentes_.insert(++ultimoOyente_, std::move(oyente));
    return ultimoOyente_;
}

void Telefono::dejarAvisos(int oyente)
{
    const std::lock_guard cerrojo(mutex_);
    oyentes_.remove(oyente);
}

void Telefono::exigirCodigo(bool exigir, int plazoMs)
{
    const std::lock_guard cerrojo(mutex_);
    exigeCodigo_ = exigir;
    plazoCodigoMs_ = plazoMs;
}

void Telefono::introducirCodigo()
{
    {
        const std::lock_guard cerrojo(mutex_);
        codigoIntroducido_ = true;
    }
    codigoPuesto_.notify_all();
}

bool Telefono::pedirCodigo(Flujo &flujo)
{
    int plazo = 0;
    {
        const std::lock_guard cerrojo(mutex_);
        if (!exigeCodigo_)
            return true;
        plazo = plazoCodigoMs_;
        codigoIntroducido_ = false;
    }
    avisar(u"com.apple.LocalAuthentication.ui.presented"_s);
    bool puesto = false;
    const auto fin = std::chrono::steady_clock::now() + std::chrono::milliseconds(plazo);
    while (!puesto && std::chrono::steady_clock::now() < fin && flujo.dormir(1)) {
        std::unique_lock cerrojo(mutex_);
        puesto = codigoPuesto_.wait_for(cerrojo, std::chrono::milliseconds(200), [this] { return codigoIntroducido_; });
    }
    avisar(u"com.apple.LocalAuthentication.ui.dismissed"_s);
    return puesto;
}

QString Telefono::claveDeCopia() const
{
    const std::lock_guard cerrojo(mutex_);
    return claveDeCopia_;
}

void Telefono::ponerClaveDeCopia(const QString &clave)
{
    {
        const std::lock_guard cerrojo(mutex_);
        claveDeCopia_ = clave;
    }
    ponerValor(u"com.apple.mobile.backup"_s, u"WillEncrypt"_s, !clave.isEmpty());
}

std::optional<LlavesDeCopia> Telefono::llavesDeCopia()
{
    const QString clave = claveDeCopia();
    const std::lock_guard cerrojo(mutexDeLlaves_);
    if (clave != claveDeLlaves_ || clave.isEmpty()) {
        claveDeLlaves_ = clave;
        llaves_ = clave.isEmpty() ? std::nullopt : std::optional(LlavesDeCopia::nuevas(clave, rondasDeCopia));
    }
    return llaves_;
}

void Telefono::recordarPeticion(const QVariantMap &peticion)
{
    const std::lock_guard cerrojo(mutex_);
    ultimaPeticion_ = peticion;
}

QVariantMap Telefono::ultimaPeticion() const
{
    const std::lock_guard cerrojo(mutex_);
    return ultimaPeticion_;
}

} // namespace simulado
