#include "engine/roll/Colocacion.h"

#include "engine/roll/FicheroLocal.h"
#include "engine/roll/NombresDelCarrete.h"

#include <cerrno>

namespace vellora::motor
{

namespace
{

constexpr int mismosNombres = 1000;

bool losHayIguales(const CarpetaDeDestino &carpeta, int numero, Colocado &colocado, const QByteArray &nombre,
                   const Descriptor &suyo, const Descriptor &entero)
{
    if (!suyo || !entero || !sonIguales(*suyo, *entero))
        return false;
    colocado = {Colocado::Fin::YaEstaba, nombre, {}};
    fstat(*suyo, &colocado.como);
    carpeta.desechar(numero);
    return true;
}

/// True when it is settled; false when the disk takes no such name.
bool colocarCon(CarpetaDeDestino &carpeta, int numero, const QByteArray &relativa, const Descriptor &entero,
                Colocado &colocado)
{
    for (int vez = 1; vez <= mismosNombres; ++vez) {
        const auto nombre = otroNombre(relativa, vez);
        const auto sitio = carpeta.colocarSiCabe(numero, nombre);
        if (sitio == CarpetaDeDestino::Sitio::Negado)
            return errno != EINVAL && errno != ENAMETOOLONG && errno != EILSEQ;
        if (sitio == CarpetaDeDestino::Sitio::Suyo) {
            colocado = {Colocado::Fin::Suyo, nombre, {}};
            // After it was named, which its own last change tells.
            fstat(*entero, &colocado.como);
            return true;
        }
        if (losHayIguales(carpeta, numero, colocado, nombre, carpeta.leer(nombre), entero))
            return true;
    }
    return true;
}

} // namespace

Colocado colocarPorContenido(CarpetaDeDestino &carpeta, int numero, const QByteArray &relativa,
                             const QByteArrayList &candidatas)
{
    const auto entero = carpeta.leer(carpeta.nombreDeTrabajo(numero));
    Colocado colocado;
    for (const auto &candidata : candidatas) {
        if (losHayIguales(carpeta, numero, colocado, candidata, carpeta.leer(candidata), entero))
            return colocado;
    }
    if (!entero || colocarCon(carpeta, numero, relativa, entero, colocado))
        return colocado;
    const auto llano = nombreLlano(relativa);
    if (llano != relativa)
        colocarCon(carpeta, numero, llano, entero, colocado);
    return colocado;
}

} // namespace vellora::motor
