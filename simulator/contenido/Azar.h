#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace simulado
{

/// A small seeded generator (splitmix64): the same seed and theme give the same numbers on any machine.
/// Each theme ("mensajes", "fotos"…) has its own sequence, so that adding to one leaves the others as they were.
class Azar
{
public:
    Azar(quint32 semilla, const char *tema);

    quint64 siguiente();
    /// A whole number in [desde, hasta], both included.
    qint64 entero(qint64 desde, qint64 hasta);
    double real(double desde, double hasta);
    bool si(int porCiento) { return entero(0, 99) < porCiento; }

    QByteArray bytes(qsizetype cuantos);
    /// Lower-case hexadecimal digits.
    QString hex(qsizetype cifras);
    QString cifras(qsizetype cuantas);
    /// A version 4 UUID in capitals, without braces.
    QString uuid();

    template <class Lista> const auto &uno(const Lista &lista)
    {
        return lista[static_cast<typename Lista::size_type>(entero(0, static_cast<qint64>(lista.size()) - 1))];
    }

private:
    quint64 m_estado;
};

} // namespace simulado
