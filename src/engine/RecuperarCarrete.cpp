#include "engine/DeLaCopia.h"
#include "engine/Ordenes.h"
#include "engine/roll/Carrete.h"

#include <QFile>
#include <QSet>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr int mismosNombres = 1000;

/// Decides where each photo of the backup goes under a folder, in one reading of its list.
class Destinos
{
public:
    explicit Destinos(QString laCarpeta) : carpeta(std::move(laCarpeta)) {}

    /// Absent for what is no photo, and for one that is there already.
    std::optional<QByteArray> sitio(const CopiaAbierta::Entrada &entrada)
    {
        constexpr QByteArrayView media("Media/");
        if (entrada.dominio != "CameraRollDomain" || !entrada.ruta.startsWith(media))
            return {};
        auto suyo = sitioLocal(QString::fromUtf8(entrada.ruta.sliced(media.size() - 1)));
        const auto datos = suyo ? leerDatosDeFichero(entrada.archivo) : std::nullopt;
        if (!suyo || !datos)
            return suyo;
        for (int vez = 1; vez <= mismosNombres; ++vez) {
            const auto nombre = otroNombre(*suyo, vez);
            if (dados.contains(nombre))
                continue;
            struct stat como = {};
            if (lstat(QFile::encodeName(carpeta + u'/' + QString::fromUtf8(nombre)).constData(), &como) != 0)
                return dar(nombre);
            const bool esDeEntonces = como.st_mtime == datos->modificado;
            if (como.st_size == datos->tamano && (esDeEntonces || tipoDe(nombre) != TipoDeFichero::Ajustes)) {
                ++yaEstan;
                return {};
            }
            // Of the same moment and another length: what an earlier run could not read whole.
            if (esDeEntonces)
                return dar(nombre);
        }
        return {};
    }

    qint64 yaEstan = 0;

private:
    QByteArray dar(const QByteArray &nombre)
    {
        dados << nombre;
        return nombre;
    }

    QString carpeta;
    QSet<QByteArray> dados;
};

} // namespace

int recuperarCarrete(const QStringList &argumentos, Avisos &avisar)
{
    const auto &destino = argumentos[2];
    const auto deTrabajo = CarpetaDeDestino::abrir(destino);
    if (!deTrabajo)
        return avisar.error(deTrabajo.motivo());
    const auto copia = abrirLaCopia(argumentos[0], argumentos[1], *deTrabajo, avisar);
    if (!copia)
        return avisar.error(copia.motivo());

    Destinos alPlanear(destino);
    const auto plan =
        Sacador(*copia, [&](const CopiaAbierta::Entrada &entrada) { return alPlanear.sitio(entrada); }).planear();
    const auto saltadas = alPlanear.yaEstan;
    if (const auto falta = faltaDeSitio(plan.bytes, *deTrabajo))
        return avisar.error(*falta);
    avisar.total(plan.ficheros + saltadas);

    const auto avance = [&](const Cuenta &cuenta) {
        avisar.progreso(saltadas + cuenta.hechos(), {{u"copiados"_s, cuenta.copiados}, {u"bytes"_s, cuenta.bytes}});
    };
    Destinos alSacar(destino);
    const Sacador sacador(*copia, [&](const CopiaAbierta::Entrada &entrada) { return alSacar.sitio(entrada); });
    Cuenta cuenta;
    if (const auto estado = sacarDeLaCopia(sacador, destino, avance, avisar, cuenta); estado != 0)
        return estado;
    CarpetaDeDestino::limpiar(destino);
    avisar.avisar(u"fin"_s,
                  {{u"recuperadas"_s, cuenta.copiados}, {u"saltadas"_s, saltadas}, {u"bytes"_s, cuenta.bytes}});
    return cuenta.fallidos + cuenta.cortados == 0 ? 0 : 1;
}

} // namespace vellora::motor
