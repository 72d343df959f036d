#include "Servicios.h"

#include "Flujo.h"
#include "Identidad.h"
#include "Plist.h"
#include "Telefono.h"

#include <QtEndian>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

struct Entrada {
    QLatin1StringView nombre;
    Servicio servicio;
};

constexpr Entrada tabla[] = {
    {"com.apple.afc"_L1, servirAfc},
    {"com.apple.mobile.notification_proxy"_L1, servirAvisos},
    {"com.apple.mobilebackup2"_L1, servirCopia},
    {"com.apple.mobile.installation_proxy"_L1, servirApps},
    {"com.apple.springboardservices"_L1, servirPantallaInicio},
    {"com.apple.mobile.diagnostics_relay"_L1, servirDiagnostico},
    {"com.apple.crashreportmover"_L1, servirMudanzaDeFallos},
    {"com.apple.crashreportcopymobile"_L1, servirInformesDeFallos},
    {"com.apple.mobile.house_arrest"_L1, servirCasaDeApps},
    {"com.apple.mobile.MCInstall"_L1, servirPerfiles},
    {"com.apple.misagent"_L1, servirProvisiones},
    {"com.apple.mobile.heartbeat"_L1, servirLatido},
};

} // namespace

Servicio buscarServicio(const QString &nombre)
{
    for (const Entrada &entrada : tabla) {
        if (entrada.nombre == nombre)
            return entrada.servicio;
    }
    return nullptr;
}

bool atender(const std::shared_ptr<Telefono> &telefono, quint16 puerto, Flujo &flujo, const QByteArray &saludo)
{
    Telefono::Puerto destino{u"lockdown"_s, false};
    if (puerto != puertoLockdown) {
        const auto tomado = telefono->tomarPuerto(puerto);
        if (!tomado)
            return false;
        destino = *tomado;
    }
    if (!flujo.escribir(saludo))
        return true;
    flujo.asignar(telefono, destino.servicio);
    telefono->averias().contarConexion(destino.servicio);
    if (destino.tls && !flujo.activarTls(telefono->identidad()))
        return true;
    const Servicio servicio = puerto == puertoLockdown ? servirLockdown : buscarServicio(destino.servicio);
    servicio(*telefono, flujo);
    return true;
}

bool enviarPlist(Flujo &flujo, const QVariant &mensaje, Formato formato)
{
    const QByteArray cuerpo = formato == Formato::Xml ? plistXml(mensaje) : plistBinario(mensaje);
    QByteArray trama(4, Qt::Uninitialized);
    qToBigEndian(quint32(cuerpo.size()), trama.data());
    return flujo.escribir(trama + cuerpo);
}

std::optional<QVariant> recibirPlist(Flujo &flujo)
{
    // Nothing a computer sends is near this; a larger length is a stream out of step.
    constexpr quint32 maximo = 256 << 20;
    char largoCrudo[4];
    if (!flujo.leer(largoCrudo, 4))
        return {};
    const auto largo = qFromBigEndian<quint32>(largoCrudo);
    if (largo > maximo)
        return {};
    QByteArray cuerpo(qsizetype(largo), Qt::Uninitialized);
    if (!flujo.leer(cuerpo.data(), cuerpo.size()))
        return {};
    return leerPlist(cuerpo);
}

} // namespace simulado
