#include "engine/roll/Colocacion.h"

#include "engine/roll/Carrete.h"
#include "engine/roll/FicheroLocal.h"

#include <QCryptographicHash>
#include <QString>

#include <algorithm>
#include <cerrno>

namespace vellora::motor
{

namespace
{

constexpr int mismosNombres = 1000;
constexpr qsizetype largoLlano = 200;

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

QByteArray parteLlana(const QByteArray &parte)
{
    if (parte.isEmpty() || parte == "." || parte == "..")
        return parte;
    auto texto = QString::fromUtf8(parte);
    for (auto &letra : texto) {
        if (letra < u' ' || letra == QChar::ReplacementCharacter || QStringView(u"<>:\"|?*\\\x7f").contains(letra))
            letra = u'_';
    }
    while (texto.endsWith(u'.') || texto.endsWith(u' '))
        texto.chop(1);
    const auto punto = texto.lastIndexOf(u'.');
    auto fin = punto > 0 && texto.size() - punto <= 8 ? texto.sliced(punto) : QString();
    auto tronco = texto.chopped(fin.size());
    while (tronco.toUtf8().size() > largoLlano)
        tronco.chop(tronco.back().isLowSurrogate() ? 2 : 1);
    if (const auto llana = (tronco + fin).toUtf8(); llana == parte)
        return parte;
    const auto suma = QCryptographicHash::hash(parte, QCryptographicHash::Sha256).toHex().first(8);
    return tronco.toUtf8() + '~' + suma + fin.toUtf8();
}

} // namespace

QByteArray nombreLlano(const QByteArray &relativa)
{
    auto partes = relativa.split('/');
    std::transform(partes.begin(), partes.end(), partes.begin(), parteLlana);
    return partes.join('/');
}

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
