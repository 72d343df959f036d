#include "core/CerrojoDeCarpeta.h"
#include "engine/DeLaCopia.h"
#include "engine/Ordenes.h"
#include "engine/device/Afc.h"
#include "engine/roll/Colocacion.h"
#include "engine/roll/NombresDelCarrete.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

/// Where a file of the backup goes under a folder; absent for what is no photo.
std::optional<QByteArray> sitioDe(const CopiaAbierta::Entrada &entrada)
{
    constexpr QByteArrayView media("Media/");
    if (entrada.dominio != "CameraRollDomain" || !entrada.ruta.startsWith(media))
        return {};
    return sitioLocal(rutaDe(entrada.ruta.sliced(media.size() - 1)));
}

/// Whether nothing of its name and length is there, so that it will want room. What is there may be another photo: that
/// is found out when it is taken out.
bool quiereSitio(const CopiaAbierta::Entrada &entrada, const QByteArray &sitio, const QString &carpeta)
{
    struct stat como = {};
    const auto datos = leerDatosDeFichero(entrada.archivo);
    return !datos || lstat(QFile::encodeName(carpeta + u'/' + QString::fromUtf8(sitio)).constData(), &como) != 0 ||
           como.st_size != datos->tamano;
}

/// Never over another file, and never taken for one that is there but by its bytes.
Sacador::Colocado sinPisarNada(CarpetaDeDestino &carpeta, int numero, const QByteArray &relativa)
{
    switch (colocarPorContenido(carpeta, numero, relativa).fin) {
    case Colocado::Fin::Suyo:
        return Sacador::Colocado::Nuevo;
    case Colocado::Fin::YaEstaba:
        return Sacador::Colocado::YaEstaba;
    default:
        carpeta.desechar(numero);
        return Sacador::Colocado::Negado;
    }
}

} // namespace

int recuperarCarrete(const QStringList &argumentos, Avisos &avisar)
{
    const auto &destino = argumentos[2];
    const auto cerrojo = CerrojoDeCarpeta::tomar(destino);
    if (const auto motivo = cerrojo.impedimento())
        return avisar.error(*motivo);
    if (const auto aviso = cerrojo.aviso())
        avisar.linea(*aviso);
    CarpetaDeDestino::limpiar(destino);
    const auto deTrabajo = CarpetaDeDestino::abrir(destino);
    if (!deTrabajo)
        return avisar.error(deTrabajo.motivo());
    const auto copia = abrirLaCopia(argumentos[0], argumentos[1], *deTrabajo, avisar);
    if (!copia)
        return avisar.error(copia.motivo());

    const Sacador sacador(*copia, sitioDe, sinPisarNada);
    const auto loNuevo = [&](const CopiaAbierta::Entrada &entrada) {
        auto sitio = sitioDe(entrada);
        return sitio && quiereSitio(entrada, *sitio, destino) ? sitio : std::nullopt;
    };
    if (const auto falta = faltaDeSitio(Sacador(*copia, loNuevo).planear().bytes, *deTrabajo))
        return avisar.error(*falta);
    avisar.total(sacador.planear().ficheros);

    const auto avance = [&](const Cuenta &cuenta) {
        avisar.progreso(cuenta.hechos(), {{u"copiados"_s, cuenta.copiados}, {u"bytes"_s, cuenta.bytes}});
    };
    Cuenta cuenta;
    if (const auto estado = sacarDeLaCopia(sacador, destino, avance, avisar, cuenta); estado != 0)
        return estado;
    if (!deTrabajo->asentar())
        return avisar.error(u"El disco no ha podido guardar todas las fotos. Mira que siga conectado y que tenga "
                            "sitio."_s);
    avisar.avisar(u"fin"_s,
                  {{u"recuperadas"_s, cuenta.copiados}, {u"saltadas"_s, cuenta.yaEstaban}, {u"bytes"_s, cuenta.bytes}});
    return cuenta.fallidos + cuenta.cortados == 0 ? 0 : 1;
}

} // namespace vellora::motor
