#include "engine/roll/PruebaDeCopia.h"

#include "engine/Interrupcion.h"
#include "engine/roll/Huella.h"
#include "engine/roll/Medio.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

Resultado<PruebaDeCopia> PruebaDeCopia::abrir(const QString &carpeta, Copiadas &copiadas, Conexiones &conexiones,
                                              const QStringList &rutas)
{
    using Prueba = Resultado<PruebaDeCopia>;
    const auto sitio = SitioDeCopias::abrir(carpeta, conexiones, rutas);
    if (!sitio)
        return Prueba::fallo(sitio.motivo());
    auto abierta = CarpetaDeDestino::abrir(carpeta);
    if (!abierta)
        return Prueba::fallo(abierta.motivo());
    // Names of files that were copied or moved a moment ago may not be on the disk yet.
    if (!abierta->asentar())
        return Prueba::fallo(u"El disco de las fotos no responde bien. No borro nada."_s);
    return PruebaDeCopia(copiadas, conexiones, *std::move(abierta), *sitio);
}

Resultado<PruebaDeCopia::Copia> PruebaDeCopia::probar(const FicheroDelCarrete &fichero)
{
    const auto no = [](const QString &motivo) {
        return Resultado<Copia>::fallo(motivo);
    };
    std::optional<Resultado<QByteArray>> delAparato;
    auto motivo = u"no tiene copia en la carpeta"_s;
    for (const auto &relativa : copiadas->candidatas(fichero)) {
        const auto local = deLaCopia(carpeta, fichero, relativa);
        if (!local) {
            motivo = local.motivo();
            continue;
        }
        if (!delAparato) {
            const auto anotada = copiadas->huella(fichero);
            delAparato = anotada ? Resultado(*anotada) : delTelefono(fichero);
        }
        if (!*delAparato)
            return no(delAparato->motivo());
        if (**delAparato == *local)
            return Copia{relativa, *local};
        motivo = u"su copia no es igual"_s;
    }
    // What the note says is not there: the next copy brings it again.
    if (!Interrupcion::pedida())
        copiadas->desmentir(fichero);
    return no(motivo);
}

bool PruebaDeCopia::sigueAhi(const FicheroDelCarrete &fichero, const Copia &copia) const
{
    auto otraVez = CarpetaDeDestino::abrir(carpeta.ruta());
    const auto suma = otraVez ? deLaCopia(*otraVez, fichero, copia.relativa) : Resultado<QByteArray>::fallo({});
    return suma && *suma == copia.huella;
}

Resultado<QByteArray> PruebaDeCopia::deLaCopia(CarpetaDeDestino &donde, const FicheroDelCarrete &fichero,
                                               const QByteArray &relativa) const
{
    const auto no = [](const QString &motivo) {
        return Resultado<QByteArray>::fallo(motivo);
    };
    const auto copia = donde.leer(relativa);
    struct stat como = {};
    // A name that only memory still leads to has no link left.
    if (!copia || fstat(*copia, &como) != 0 || !S_ISREG(como.st_mode) || como.st_nlink == 0)
        return no(u"su copia ya no está en la carpeta"_s);
    if (como.st_size != fichero.ficha.tamano)
        return no(u"su copia ya no está entera"_s);
    if (!sitio.esSuyo(*copia))
        return no(u"su copia está en otro disco que se ve dentro de la carpeta, y podría ser el propio iPhone"_s);
    auto suma = huellaDelMedio(*copia);
    return suma ? suma : no(u"su copia "_s + suma.motivo());
}

Resultado<QByteArray> PruebaDeCopia::delTelefono(const FicheroDelCarrete &fichero)
{
    Huella huella;
    const auto leidos = conexiones->primera().leer(fichero.ruta, fichero.ficha, [&](QByteArrayView trozo) {
        huella.poner(trozo);
        return !Interrupcion::pedida();
    });
    if (!leidos || *leidos != fichero.ficha.tamano)
        return Resultado<QByteArray>::fallo(leidos ? u"se ha parado"_s : leidos.motivo());
    auto suma = huella.sacar();
    return suma.isEmpty() ? Resultado<QByteArray>::fallo(u"no se puede comprobar"_s) : Resultado(std::move(suma));
}

} // namespace vellora::motor
