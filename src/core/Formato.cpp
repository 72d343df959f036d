#include "core/Formato.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace vellora::Formato
{

namespace
{

// QLocale groups seven and ten digits of Spanish wrongly, so the thousands are set here; four digits stay together.
QString conMiles(qint64 entero)
{
    auto cifras = QString::number(entero);
    if (cifras.size() > 4) {
        for (auto i = cifras.size() - 3; i > 0; i -= 3)
            cifras.insert(i, u'.');
    }
    return cifras;
}

QString conDecimales(double valor, int decimales)
{
    const auto redondo = QString::number(valor, 'f', decimales);
    const auto punto = redondo.indexOf(u'.');
    auto fraccion = redondo.mid(punto + 1);
    while (fraccion.endsWith(u'0'))
        fraccion.chop(1);
    const auto entero = conMiles(redondo.left(punto).toLongLong());
    return fraccion.isEmpty() ? entero : entero + u',' + fraccion;
}

} // namespace

const QLocale &espanol()
{
    static const QLocale locale(QLocale::Spanish, QLocale::Spain);
    return locale;
}

QString tamano(std::optional<qint64> bytes)
{
    if (!bytes)
        return u"—"_s;
    const auto megas = static_cast<double>(*bytes) / 1e6;
    // What would round up to 1,000 MB is told in gigabytes.
    if (megas < 999.95)
        return conDecimales(megas, 1) + u" MB"_s;
    return conDecimales(megas / 1e3, 2) + u" GB"_s;
}

QString entero(qint64 numero)
{
    return numero < 0 ? u'-' + conMiles(-numero) : conMiles(numero);
}

} // namespace vellora::Formato
