#include "engine/DeLaCopia.h"

#include "core/Formato.h"
#include "engine/Interrupcion.h"
#include "platform/Llavero.h"

#include <QFile>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr qint64 holgura = 64LL * 1000 * 1000;
constexpr qint64 maximoDeQuejas = 20;

} // namespace

std::optional<QString> faltaDeSitio(qint64 bytes, const CarpetaDeDestino &carpeta)
{
    const auto libres = carpeta.libres();
    if (!libres || bytes == 0 || bytes <= *libres - holgura)
        return {};
    return u"No hay sitio en el disco: hacen falta %1 y quedan %2. Libera espacio y vuelve a intentarlo."_s.arg(
        Formato::tamano(bytes + holgura), Formato::tamano(*libres));
}

Resultado<CopiaAbierta> abrirLaCopia(const QString &udid, const QString &copias, const CarpetaDeDestino &deTrabajo,
                                     Avisos &avisar, CopiaAbierta::Cierre *cierre)
{
    const auto contrasena = [&] {
        auto guardada = Llavero::leer(udid);
        if (guardada)
            avisar.linea(u"Abriendo la copia con su contraseña; tarda unos segundos."_s);
        return guardada;
    };
    const auto carpeta = QFile::exists(copias + u"/Manifest.db"_s) ? copias : copias + u'/' + udid;
    return CopiaAbierta::abrir(carpeta, contrasena, deTrabajo, cierre);
}

int sacarDeLaCopia(const Sacador &sacador, const QString &destino, const Sacador::Avance &avance, Avisos &avisar,
                   Cuenta &cuenta)
{
    QStringList quejas;
    const auto queja = [&](const QByteArray &ruta, const QString &motivo) {
        if (quejas.size() < maximoDeQuejas)
            quejas << u"No se pudo sacar %1: %2."_s.arg(QString::fromUtf8(ruta), motivo);
    };
    const auto parada = sacador.sacar(destino, avance, queja, cuenta);
    for (const auto &linea : quejas)
        avisar.linea(linea);
    if (Interrupcion::pedida())
        return Interrupcion::estado;
    if (parada)
        return avisar.error(*parada);
    if (cuenta.copiados == 0 && cuenta.fallidos > 0)
        return avisar.error(u"La copia está dañada: no se ha podido sacar nada de ella. Haz una copia nueva."_s);
    return 0;
}

} // namespace vellora::motor
