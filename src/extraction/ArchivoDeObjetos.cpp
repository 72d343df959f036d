#include "extraction/ArchivoDeObjetos.h"

namespace vellora
{

namespace
{

constexpr std::size_t maximoDeTabla = 1U << 16U;
constexpr qsizetype maximoDeTipos = 256;
constexpr int maximoDeClases = 64; // one above the other
constexpr qint64 primeraReferencia = -110;

constexpr unsigned char primeraMarca = 0x80;
constexpr unsigned char marca16 = 0x81;
constexpr unsigned char marca32 = 0x82;
constexpr unsigned char marcaNuevo = 0x84;
constexpr unsigned char marcaNada = 0x85;
constexpr unsigned char marcaFin = 0x86;
constexpr unsigned char marca64 = 0x87;
constexpr unsigned char ultimaMarca = 0x91;

} // namespace

void ArchivoDeObjetos::fallar()
{
    mal_ = true;
    sitio = archivo.size();
}

unsigned char ArchivoDeObjetos::byte()
{
    if (sitio < archivo.size())
        return static_cast<unsigned char>(archivo[sitio++]);
    fallar();
    return marcaNada;
}

QByteArrayView ArchivoDeObjetos::bytes(quint64 cuantos)
{
    if (cuantos > static_cast<quint64>(archivo.size() - sitio)) {
        fallar();
        return {};
    }
    const auto trozo = archivo.sliced(sitio, static_cast<qsizetype>(cuantos));
    sitio += trozo.size();
    return trozo;
}

quint64 ArchivoDeObjetos::crudo(int cuantos)
{
    quint64 numero = 0;
    for (unsigned i = 0; i < static_cast<unsigned>(cuantos); ++i) {
        const auto uno = quint64{byte()};
        numero = alReves ? numero << 8U | uno : numero | uno << (8U * i);
    }
    return numero;
}

qint64 ArchivoDeObjetos::entero()
{
    return entero(byte());
}

qint64 ArchivoDeObjetos::entero(unsigned char primero, bool sinSigno)
{
    if (primero == marca16) {
        const auto valor = crudo(2);
        return sinSigno ? static_cast<qint64>(valor) : static_cast<qint16>(valor);
    }
    if (primero == marca32) {
        const auto valor = crudo(4);
        return sinSigno ? static_cast<qint64>(valor) : static_cast<qint32>(valor);
    }
    if (primero == marca64)
        return static_cast<qint64>(crudo(8));
    if (primero >= primeraMarca && primero <= ultimaMarca)
        fallar();
    return static_cast<signed char>(primero);
}

quint64 ArchivoDeObjetos::largo()
{
    const auto valor = entero(byte(), true);
    if (valor < 0)
        fallar();
    return mal_ ? 0 : static_cast<quint64>(valor);
}

void ArchivoDeObjetos::cabecera()
{
    constexpr qint64 version = 4;
    constexpr qint64 sistema = 1000;
    const bool laNuestra = entero() == version;
    const auto nombre = bytes(largo());
    alReves = nombre == "typedstream";
    if (!laNuestra || (!alReves && nombre != "streamtyped") || entero() != sistema)
        fallar();
}

std::size_t ArchivoDeObjetos::indice(qint64 referencia, std::size_t cuantos)
{
    const auto cual = referencia - primeraReferencia;
    if (cual >= 0 && static_cast<quint64>(cual) < cuantos)
        return static_cast<std::size_t>(cual);
    fallar();
    return ninguno;
}

/// A text that is written once and then pointed at.
QByteArrayView ArchivoDeObjetos::compartida()
{
    const auto primero = byte();
    if (primero == marcaNada)
        return {};
    if (primero != marcaNuevo) {
        const auto cual = indice(entero(primero), compartidas.size());
        return cual == ninguno ? QByteArrayView() : compartidas[cual];
    }
    const auto texto = bytes(largo());
    if (compartidas.size() >= maximoDeTabla)
        fallar();
    else
        compartidas.push_back(texto);
    return texto;
}

QByteArrayView ArchivoDeObjetos::tiposDeGrupo()
{
    const auto tipos = compartida();
    presupuesto -= tipos.size();
    if (!tipos.isEmpty() && tipos.size() <= maximoDeTipos && presupuesto >= 0)
        return tipos;
    fallar();
    return {};
}

void ArchivoDeObjetos::grupo(QByteArrayView tipos)
{
    if (tiposDeGrupo() != tipos)
        fallar();
}

/// Everything that may be pointed at takes its number when it begins.
std::size_t ArchivoDeObjetos::apuntar(Cosa::Clase clase)
{
    if (cosas.size() >= maximoDeTabla) {
        fallar();
        return ninguno;
    }
    cosas.push_back({clase, ninguno, {}, {}});
    return cosas.size() - 1;
}

std::size_t ArchivoDeObjetos::referencia(unsigned char primero, Cosa::Clase clase)
{
    const auto cual = indice(entero(primero), cosas.size());
    if (cual != ninguno && cosas[cual].clase == clase)
        return cual;
    fallar();
    return ninguno;
}

/// A class with those above it; `ninguno` for none.
std::size_t ArchivoDeObjetos::tipo()
{
    auto primera = ninguno;
    auto anterior = ninguno;
    for (int arriba = 0; arriba < maximoDeClases && !mal_; ++arriba) {
        const auto primero = byte();
        const bool nueva = primero == marcaNuevo;
        auto esta = ninguno;
        if (nueva)
            esta = apuntar(Cosa::Tipo);
        else if (primero != marcaNada)
            esta = referencia(primero, Cosa::Tipo);
        (anterior == ninguno ? primera : cosas[anterior].suTipo) = esta;
        if (!nueva || esta == ninguno)
            return primera;
        cosas[esta].nombre = compartida();
        entero(); // its version
        anterior = esta;
    }
    fallar();
    return ninguno;
}

bool ArchivoDeObjetos::es(std::size_t objeto, QByteArrayView clase) const
{
    auto una = objeto == ninguno ? ninguno : cosas[objeto].suTipo;
    for (int arriba = 0; una != ninguno && arriba < maximoDeClases; ++arriba, una = cosas[una].suTipo) {
        if (cosas[una].nombre == clase)
            return true;
    }
    return false;
}

bool ArchivoDeObjetos::acaba()
{
    if (mal_ || sitio >= archivo.size()) {
        fallar(); // an end was due
        return true;
    }
    if (static_cast<unsigned char>(archivo[sitio]) != marcaFin)
        return false;
    ++sitio;
    return true;
}

ArchivoDeObjetos::Principio ArchivoDeObjetos::empezarObjeto()
{
    const auto primero = byte();
    if (primero == marcaNada)
        return {};
    if (primero != marcaNuevo)
        return {referencia(primero, Cosa::Objeto), false};
    const auto este = apuntar(Cosa::Objeto);
    const auto suTipo = tipo();
    if (mal_)
        return {};
    cosas[este].suTipo = suTipo;
    return {este, true};
}

} // namespace vellora
