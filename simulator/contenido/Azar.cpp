#include "contenido/Azar.h"

namespace simulado
{

Azar::Azar(quint32 semilla, const char *tema) : m_estado(0xcbf29ce484222325ULL ^ semilla)
{
    for (const char *c = tema; *c; ++c)
        m_estado = (m_estado ^ static_cast<unsigned char>(*c)) * 0x100000001b3ULL;
}

quint64 Azar::siguiente()
{
    m_estado += 0x9e3779b97f4a7c15ULL;
    quint64 z = m_estado;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
}

qint64 Azar::entero(qint64 desde, qint64 hasta)
{
    const auto ancho = static_cast<quint64>(hasta - desde) + 1;
    return desde + static_cast<qint64>(siguiente() % ancho);
}

double Azar::real(double desde, double hasta)
{
    return desde + (hasta - desde) * (static_cast<double>(siguiente() >> 11) / 9007199254740992.0);
}

QByteArray Azar::bytes(qsizetype cuantos)
{
    QByteArray salida(cuantos, Qt::Uninitialized);
    quint64 trozo = 0;
    for (qsizetype i = 0; i < cuantos; ++i) {
        if (i % 8 == 0)
            trozo = siguiente();
        salida[i] = static_cast<char>(trozo & 0xff);
        trozo >>= 8;
    }
    return salida;
}

QString Azar::hex(qsizetype cifras)
{
    return QString::fromLatin1(bytes((cifras + 1) / 2).toHex().left(cifras));
}

QString Azar::cifras(qsizetype cuantas)
{
    QString salida;
    for (qsizetype i = 0; i < cuantas; ++i)
        salida += QChar('0' + static_cast<int>(entero(0, 9)));
    return salida;
}

QString Azar::uuid()
{
    auto b = bytes(16);
    b[6] = static_cast<char>((b[6] & 0x0f) | 0x40);
    b[8] = static_cast<char>((b[8] & 0x3f) | 0x80);
    const auto h = QString::fromLatin1(b.toHex().toUpper());
    return h.left(8) + QLatin1Char('-') + h.mid(8, 4) + QLatin1Char('-') + h.mid(12, 4) + QLatin1Char('-') +
           h.mid(16, 4) + QLatin1Char('-') + h.mid(20);
}

} // namespace simulado
