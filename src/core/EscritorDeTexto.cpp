#include "core/EscritorDeTexto.h"

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

bool EscritorDeTexto::cerrar()
{
    vaciar();
    if (!fichero && bien)
        fichero = carpeta.seguir(numero);
    colocado = bien && fichero && fdatasync(*fichero) == 0 && carpeta.colocar(numero, relativa);
    fichero = Descriptor();
    return colocado;
}

void ponerTextoLimpio(QByteArray &a, QByteArrayView bytes)
{
    if (QUtf8StringView(bytes).isValidUtf8() && !bytes.contains('\0'))
        a += bytes;
    else
        a += QString::fromUtf8(bytes).replace(QChar::Null, QChar::ReplacementCharacter).toUtf8();
}

} // namespace vellora
