#include "extraction/ArchivoDeObjetos.h"

#include <cstring>

namespace vellora
{

namespace
{

constexpr int maximaHondura = 64;
constexpr unsigned char marcaReal = 0x83;
constexpr unsigned char marcaNuevo = 0x84;
constexpr unsigned char marcaNada = 0x85;

/// Length of the first type of a group: a letter, or what stands between two brackets; 0 when they do not match.
qsizetype largoDelPrimero(QByteArrayView tipos)
{
    int abiertos = 0;
    for (qsizetype i = 0; i < tipos.size(); ++i) {
        abiertos += tipos[i] == '[' || tipos[i] == '{' ? 1 : tipos[i] == ']' || tipos[i] == '}' ? -1 : 0;
        if (abiertos == 0)
            return i + 1;
    }
    return 0;
}

} // namespace

bool ArchivoDeObjetos::bajar()
{
    if (hondura == maximaHondura)
        fallar();
    hondura += mal_ ? 0 : 1;
    return !mal_;
}

std::size_t ArchivoDeObjetos::objeto()
{
    const auto [este, nuevo] = empezarObjeto();
    if (!nuevo || !bajar())
        return este;
    ValorArchivado valor;
    while (!acaba())
        valores(tiposDeGrupo(), valor);
    --hondura;
    if (!es(este, "NSDictionary") && !es(este, "NSArray"))
        cosas[este].valor = valor;
    return este;
}

double ArchivoDeObjetos::real(int cuantos)
{
    const auto primero = byte();
    if (primero != marcaReal)
        return static_cast<double>(entero(primero));
    const auto bits = crudo(cuantos);
    if (cuantos == 4) {
        float corto = 0;
        const auto suyos = static_cast<quint32>(bits);
        std::memcpy(&corto, &suyos, sizeof corto);
        return static_cast<double>(corto);
    }
    double largo = 0;
    std::memcpy(&largo, &bits, sizeof largo);
    return largo;
}

/// One value for each type. What tells most of an object stays in `valor`: bytes before numbers.
void ArchivoDeObjetos::valores(QByteArrayView tipos, ValorArchivado &valor)
{
    while (!tipos.isEmpty() && !mal_) {
        const auto suLargo = largoDelPrimero(tipos);
        if (--presupuesto < 0 || suLargo == 0)
            return fallar();
        if (suLargo == 1)
            unValor(tipos.front(), valor);
        else
            serie(tipos.first(suLargo), valor);
        tipos = tipos.sliced(suLargo);
    }
}

void ArchivoDeObjetos::unValor(char tipoDelValor, ValorArchivado &valor)
{
    ValorArchivado este;
    if (tipoDelValor == '@') {
        if (const auto cual = objeto(); cual != ninguno)
            este = cosas[cual].valor;
    } else if (tipoDelValor == '+') {
        este = {ValorArchivado::Texto, bytes(largo()), 0, 0};
    } else if (tipoDelValor == 'c' || tipoDelValor == 'C' || tipoDelValor == 'B') {
        este = {ValorArchivado::Entero, {}, static_cast<signed char>(byte()), 0};
    } else if (tipoDelValor == 'f' || tipoDelValor == 'd') {
        este = {ValorArchivado::Real, {}, 0, real(tipoDelValor == 'f' ? 4 : 8)};
    } else if (QByteArrayView("iIsSlLqQ").contains(tipoDelValor)) {
        este = {ValorArchivado::Entero, {}, entero(), 0};
    } else if (tipoDelValor == '#') {
        tipo();
    } else if (tipoDelValor == '*') {
        cadena();
    } else {
        fallar();
    }
    const bool conBytes = valor.clase == ValorArchivado::Texto || valor.clase == ValorArchivado::Datos;
    if (este.clase != ValorArchivado::Otro && (!conBytes || !este.bytes.isEmpty()))
        valor = este;
}

/// Text of the program itself, which may be pointed at like an object.
void ArchivoDeObjetos::cadena()
{
    const auto primero = byte();
    if (primero == marcaNuevo) {
        apuntar(Cosa::Cadena);
        compartida();
    } else if (primero != marcaNada) {
        referencia(primero, Cosa::Cadena);
    }
}

/// "[12c]", so many of one type, whose bytes stand there as they are; or "{name=…}", members one after the other.
void ArchivoDeObjetos::serie(QByteArrayView tipos, ValorArchivado &valor)
{
    const bool iguales = tipos.front() == '[';
    auto de = tipos.sliced(1, tipos.size() - 2);
    quint64 cuantos = iguales ? 0 : 1;
    if (!iguales)
        de = de.sliced(de.indexOf('=') + 1);
    for (; iguales && !de.isEmpty() && de.front() >= '0' && de.front() <= '9'; de = de.sliced(1)) {
        cuantos = 10 * cuantos + static_cast<quint64>(de.front() - '0');
        if (cuantos > static_cast<quint64>(archivo.size()))
            return fallar();
    }
    if (iguales && (de == "c" || de == "C")) {
        valor = {ValorArchivado::Datos, bytes(cuantos), 0, 0};
        return;
    }
    if (!bajar())
        return;
    for (; cuantos > 0 && !mal_; --cuantos) {
        presupuesto -= 1 + de.size();
        if (presupuesto < 0)
            fallar();
        else
            valores(de, valor);
    }
    --hondura;
}

} // namespace vellora
