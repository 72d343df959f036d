#include "extraction/Fechas.h"

#include <cmath>
#include <ctime>

namespace vellora::Extraccion
{

namespace
{

constexpr qint64 principioApple = 978'307'200; // 2001-01-01 00:00:00 UTC in seconds since 1970
constexpr double desdeAquiNanosegundos = 1e12;
// Some thirty million years: within what the C library turns into a date.
constexpr double segundosImposibles = 1e15;
constexpr int primerAno = 1900;
constexpr int anoSinSaber = 1604;

void dosCifras(QByteArray &linea, int numero)
{
    linea += static_cast<char>('0' + numero / 10 % 10);
    linea += static_cast<char>('0' + numero % 10);
}

void ponerAno(QByteArray &linea, int ano)
{
    linea += '/';
    if (ano > 9999)
        linea += QByteArray::number(ano / 100);
    else
        dosCifras(linea, ano / 100);
    dosCifras(linea, ano);
}

/// `valor`: seconds since 2001.
void ponerMomento(QByteArray &linea, double valor, Zona zona)
{
    if (!(std::abs(valor) <= segundosImposibles))
        return; // NaN among them
    // Qt's own dates take ten times as long, and this is where half a million messages spend their time.
    const auto momento = static_cast<time_t>(static_cast<qint64>(std::floor(valor)) + principioApple);
    struct tm partes = {};
    const bool hay =
        zona == Zona::Ninguna ? gmtime_r(&momento, &partes) != nullptr : localtime_r(&momento, &partes) != nullptr;
    const int ano = partes.tm_year + 1900;
    if (!hay || (ano < primerAno && ano != anoSinSaber))
        return;
    dosCifras(linea, partes.tm_mday);
    linea += '/';
    dosCifras(linea, partes.tm_mon + 1);
    if (ano == anoSinSaber)
        return;
    ponerAno(linea, ano);
    linea += ' ';
    dosCifras(linea, partes.tm_hour);
    linea += ':';
    dosCifras(linea, partes.tm_min);
}

/// Absent for what is no number, and for 0.
std::optional<double> numero(const QString &texto)
{
    bool esNumero = false;
    const double valor = texto.toDouble(&esNumero);
    const bool conBlancos = !texto.isEmpty() && (texto.front().isSpace() || texto.back().isSpace());
    return esNumero && !conBlancos && valor != 0 ? std::optional(valor) : std::nullopt;
}

std::optional<double> numero(const Fila &fila, int columna)
{
    const auto valor = fila.real(columna);
    return !valor ? numero(fila.texto(columna)) : *valor != 0 ? valor : std::nullopt;
}

double enSegundos(double valor)
{
    return std::abs(valor) > desdeAquiNanosegundos ? valor / 1e9 : valor;
}

} // namespace

QString fechaApplePublica(const QString &texto)
{
    QByteArray fecha;
    if (const auto valor = numero(texto))
        ponerMomento(fecha, enSegundos(*valor), Zona::DelOrdenador);
    return QString::fromLatin1(fecha);
}

void ponerFecha(QByteArray &linea, const Fila &fila, int columna, Zona zona)
{
    if (const auto valor = numero(fila, columna))
        ponerMomento(linea, enSegundos(*valor), zona);
}

void ponerFechaUnix(QByteArray &linea, const Fila &fila, int columna)
{
    if (const auto valor = numero(fila, columna))
        ponerMomento(linea, *valor - principioApple, Zona::DelOrdenador);
}

void ponerFechaDeLasDos(QByteArray &linea, const Fila &fila, int columna)
{
    if (const auto valor = numero(fila, columna))
        ponerMomento(linea, *valor > principioApple ? *valor - principioApple : *valor, Zona::DelOrdenador);
}

} // namespace vellora::Extraccion
