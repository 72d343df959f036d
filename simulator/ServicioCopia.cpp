#include "EnlaceDispositivo.h"
#include "EscritorDeCopia.h"
#include "Flujo.h"
#include "Plist.h"
#include "RestauradorDeCopia.h"
#include "Servicios.h"
#include "Telefono.h"

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

constexpr int reinicioMs = 1500;
constexpr int errorDeClave = 207;
constexpr int errorDeBloqueo = 208;

/// One client of the backup service.
class SesionCopia
{
public:
    SesionCopia(Telefono &telefono, Flujo &flujo) : telefono_(telefono), flujo_(flujo), enlace_(telefono, flujo) {}

    void servir()
    {
        if (!enlace_.saludar())
            return;
        while (const auto mensaje = enlace_.recibir()) {
            if (mensaje->value(0).toString() == "DLMessageDisconnect"_L1 || !atender(mensaje->value(1).toMap()))
                break;
        }
        if (reiniciar_)
            telefono_.reiniciar(reinicioMs);
    }

private:
    bool atender(const QVariantMap &peticion)
    {
        const QString nombre = peticion[u"MessageName"_s].toString();
        telefono_.averias().contarPeticion(u"copia:"_s + nombre);
        if (nombre == "Hello"_L1)
            return enlace_.concluir(0, {}, {{u"ProtocolVersion"_s, 2.1}});
        telefono_.recordarPeticion(peticion);
        const auto desenlace = hacer(nombre, peticion);
        if (!desenlace) {
            telefono_.averias().contarEvento(nombre + u" interrumpido"_s);
            return false;
        }
        telefono_.averias().contarEvento(u"%1 %2"_s.arg(nombre).arg(desenlace->codigo));
        return enlace_.concluir(desenlace->codigo, desenlace->texto, respuesta_);
    }

    std::optional<Desenlace> hacer(const QString &nombre, const QVariantMap &peticion)
    {
        if (const auto fallo = telefono_.averias().tomarFallo(nombre))
            return errorDeCopia(fallo->error.toInt(), fallo->texto);
        if (nombre == "Backup"_L1)
            return copiar(peticion);
        if (nombre == "Restore"_L1)
            return restaurar(peticion);
        if (nombre == "ChangePassword"_L1)
            return cambiarClave(peticion);
        if (nombre == "Info"_L1) {
            respuesta_ = {{u"Content"_s, u"Backup of "_s + telefono_.valores({})[u"DeviceName"_s].toString()}};
            return Desenlace{};
        }
        return errorDeCopia(1, u"Unsupported request"_s);
    }

    /// Absent when everything is in order; otherwise why the phone refuses.
    std::optional<Desenlace> negarse()
    {
        if (telefono_.bloqueado() || !telefono_.pedirCodigo(flujo_))
            return errorDeCopia(errorDeBloqueo);
        return {};
    }

    std::optional<Desenlace> copiar(const QVariantMap &peticion)
    {
        if (const auto negativa = negarse())
            return negativa;
        const bool completa = peticion[u"Options"_s].toMap()[u"ForceFullBackup"_s].toBool();
        const QString destino = peticion.value(u"TargetIdentifier"_s, telefono_.udid()).toString();
        return EscritorDeCopia(telefono_, enlace_, destino, completa, telefono_.llavesDeCopia()).escribir();
    }

    std::optional<Desenlace> restaurar(const QVariantMap &peticion)
    {
        if (const auto negativa = negarse())
            return negativa;
        const QString origen =
            peticion.value(u"SourceIdentifier"_s, peticion.value(u"TargetIdentifier"_s, telefono_.udid())).toString();
        const QVariantMap opciones = peticion[u"Options"_s].toMap();
        const auto desenlace =
            RestauradorDeCopia(telefono_, enlace_, origen, opciones[u"Password"_s].toString()).restaurar();
        reiniciar_ = desenlace && desenlace->codigo == 0 && opciones.value(u"RestoreShouldReboot"_s, true).toBool();
        return desenlace;
    }

    std::optional<Desenlace> cambiarClave(const QVariantMap &peticion)
    {
        const QString vieja = peticion[u"OldPassword"_s].toString();
        const QString nueva = peticion[u"NewPassword"_s].toString();
        if (const auto negativa = negarse())
            return negativa;
        if (vieja != telefono_.claveDeCopia())
            return errorDeCopia(errorDeClave);
        telefono_.ponerClaveDeCopia(nueva);
        return Desenlace{};
    }

    Telefono &telefono_;
    Flujo &flujo_;
    EnlaceDispositivo enlace_;
    QVariantMap respuesta_;
    bool reiniciar_ = false;
};

} // namespace

void servirCopia(Telefono &telefono, Flujo &flujo)
{
    SesionCopia(telefono, flujo).servir();
}

} // namespace simulado
