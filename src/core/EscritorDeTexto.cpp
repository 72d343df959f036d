#include "core/EscritorDeTexto.h"

#include "core/Vuelta.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace vellora
{

namespace
{

constexpr qsizetype largoDeEspera = 64LL * 1024;

} // namespace

EscritorDeTexto::EscritorDeTexto(CarpetaDeDestino &laCarpeta, QByteArray laRelativa, int elNumero)
    : carpeta(laCarpeta)
    , relativa(std::move(laRelativa))
    , numero(elNumero)
    , fichero(carpeta.nuevo(numero))
    , bien(bool(fichero))
{
}

EscritorDeTexto::~EscritorDeTexto()
{
    if (!colocado)
        carpeta.desechar(numero);
}

EscritorDeTexto &EscritorDeTexto::operator<<(QByteArrayView bytes)
{
    espera.append(bytes);
    if (espera.size() >= largoDeEspera)
        vaciar();
    return *this;
}

void EscritorDeTexto::vaciar()
{
    if (!fichero && bien && !espera.isEmpty()) {
        fichero = carpeta.seguir(numero);
        bien = bool(fichero);
    }
    const char *desde = espera.constData();
    auto quedan = static_cast<size_t>(espera.size());
    while (bien && quedan > 0) {
        const auto escritos = write(*fichero, desde, quedan);
        if (escritos < 0 && errno == EINTR)
            continue;
        bien = escritos >= 0;
        desde += escritos;
        quedan -= bien ? static_cast<size_t>(escritos) : 0;
    }
    espera.resize(0); // keeps its room
}

void EscritorDeTexto::soltar()
{
    vaciar();
    espera = {};
    fichero = Descriptor();
}

bool EscritorDeTexto::cerrar(bool entero)
{
    vaciar();
    if (!fichero && bien)
        fichero = carpeta.seguir(numero);
    colocado = bien && fichero && fdatasync(*fichero) == 0 && colocar(entero);
    fichero = Descriptor();
    if (!colocado)
        Vuelta::sinEscribir(relativa);
    return colocado;
}

bool EscritorDeTexto::colocar(bool entero)
{
    using Sitio = CarpetaDeDestino::Sitio;
    const auto sitio = entero ? Sitio::Ocupado : carpeta.colocarSiCabe(numero, relativa);
    if (sitio == Sitio::Ocupado)
        return carpeta.colocar(numero, entero ? relativa : conCola(relativa, "(a medias)"));
    return sitio == Sitio::Suyo;
}

Descriptor EscritorDeTexto::releer()
{
    soltar();
    return bien ? carpeta.releer(numero) : Descriptor();
}

QByteArray EscritorDeTexto::conCola(const QByteArray &relativa, const QByteArray &cola)
{
    constexpr qsizetype largoDeNombre = 255; // bytes, of the common file systems
    const auto barra = relativa.lastIndexOf('/') + 1;
    const auto punto = relativa.lastIndexOf('.');
    const auto corte = punto > barra ? punto : relativa.size();
    const auto detras = ' ' + cola + relativa.sliced(corte);
    auto nombre = relativa.sliced(barra, corte - barra).first(std::min(corte - barra, largoDeNombre - detras.size()));
    while (!QUtf8StringView(nombre).isValidUtf8())
        nombre.chop(1); // not inside a character
    return relativa.first(barra) + nombre + detras;
}

void ponerTextoLimpio(QByteArray &a, QByteArrayView bytes)
{
    if (QUtf8StringView(bytes).isValidUtf8() && !bytes.contains('\0'))
        a += bytes;
    else
        a += QString::fromUtf8(bytes).replace(QChar::Null, QChar::ReplacementCharacter).toUtf8();
}

} // namespace vellora
