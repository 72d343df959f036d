#include "extraction/NombresDistintos.h"

#include <QCryptographicHash>

namespace vellora
{

namespace
{

constexpr qsizetype largoDeNombre = 255; // bytes, of the common file systems
constexpr qsizetype largoCorto = 200;

QString plegado(const QByteArray &nombre)
{
    return QString::fromUtf8(nombre).normalized(QString::NormalizationForm_C).toCaseFolded();
}

} // namespace

QByteArray NombresDistintos::recortado(const QByteArray &nombre, qsizetype reserva)
{
    auto suyo = nombre;
    suyo.replace('/', '-');
    if (suyo.size() + reserva <= largoDeNombre)
        return suyo;
    const auto huella = QCryptographicHash::hash(nombre, QCryptographicHash::Sha1).toHex().first(8);
    auto corte = std::min(largoCorto, suyo.size());
    while (corte < suyo.size() && (static_cast<unsigned char>(suyo[corte]) & 0xC0U) == 0x80U)
        --corte; // not inside a character
    return suyo.first(corte) + '~' + huella;
}

QByteArray NombresDistintos::tomar(const QByteArray &nombre, const QByteArray &extension)
{
    auto primero = recortado(nombre, extension.size()) + extension;
    auto &veces = tomados[plegado(primero)];
    if (veces++ == 0)
        return primero;
    for (auto numero = veces;; ++numero) {
        const auto cola = " (" + QByteArray::number(numero) + ')' + extension;
        auto otro = recortado(nombre, cola.size()) + cola;
        if (auto &suyas = tomados[plegado(otro)]; suyas++ == 0) {
            tomados[plegado(primero)] = numero;
            return otro;
        }
    }
}

} // namespace vellora
