#pragma once

#include <QMetaType>
#include <QString>
#include <QtGlobal>

namespace vellora
{

/// The battery as the engine told it. Capacities in mAh.
struct DatosBateria {
    Q_GADGET
    Q_PROPERTY(int ciclos MEMBER ciclos)
    Q_PROPERTY(int maxima MEMBER maxima)
    Q_PROPERTY(int disenio MEMBER disenio)
    Q_PROPERTY(int perdido READ perdido)
    Q_PROPERTY(double grados READ grados)
    Q_PROPERTY(double voltios READ voltios)
    Q_PROPERTY(bool cargando MEMBER cargando)
    Q_PROPERTY(bool enchufado MEMBER enchufado)
    Q_PROPERTY(bool llena MEMBER llena)
    Q_PROPERTY(bool critica MEMBER critica)
    Q_PROPERTY(int minutosRestantes MEMBER minutosRestantes)
    Q_PROPERTY(int desconexiones MEMBER desconexiones)
    Q_PROPERTY(int salud READ salud)
    Q_PROPERTY(bool tocaCambiarla READ tocaCambiarla)
    Q_PROPERTY(double vidaGastada READ vidaGastada)
    Q_PROPERTY(QString veredicto READ veredicto)

public:
    int ciclos = 0;
    int maxima = 0;  ///< what it holds now
    int disenio = 0; ///< what it was made for
    int nominal = 0;
    int actual = 0;         ///< present charge
    double temperatura = 0; ///< hundredths of a degree Celsius
    double voltaje = 0;     ///< mV
    bool cargando = false;
    bool enchufado = false;
    bool llena = false;
    int minutosRestantes = 0; ///< 0 when the phone does not know
    int desconexiones = 0;    ///< times that it lost contact
    bool critica = false;

    /// Percent of the capacity as designed; 0 when it is not known.
    int salud() const;
    int perdido() const { return qMax(disenio - maxima, 0); }
    bool tocaCambiarla() const;
    /// Of a life of a thousand cycles, 0 to 1.
    double vidaGastada() const { return qMin(static_cast<double>(ciclos) / 1000.0, 1.0); }
    QString veredicto() const;
    double grados() const { return temperatura / 100.0; }
    double voltios() const { return voltaje / 1000.0; }

    bool operator==(const DatosBateria &) const = default;
};

/// What the phone says of its networks.
struct InfoRed {
    Q_GADGET
    Q_PROPERTY(QString operador MEMBER operador)
    Q_PROPERTY(QString telefono MEMBER telefono)
    Q_PROPERTY(QString simEstado MEMBER simEstado)
    Q_PROPERTY(bool wifiOn MEMBER wifiOn)
    Q_PROPERTY(bool avion MEMBER avion)
    Q_PROPERTY(bool hayAlgo READ hayAlgo)

public:
    QString operador;
    QString telefono;
    QString simEstado; ///< in words
    bool wifiOn = false;
    bool avion = false;

    /// Something that the owner may want to look at.
    bool hayAlgo() const;

    bool operator==(const InfoRed &) const = default;
};

} // namespace vellora

Q_DECLARE_METATYPE(vellora::DatosBateria)
Q_DECLARE_METATYPE(vellora::InfoRed)
