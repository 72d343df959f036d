#include "LlavesDeCopia.h"

#include "Cifra.h"

#include <QHash>
#include <QList>
#include <QtEndian>

namespace simulado
{
namespace
{

constexpr int rondas = 10'000;
constexpr quint32 soloContrasena = 2;
constexpr quint32 contrasenaYTelefono = 3; // "this device only": no computer opens these
constexpr int primeraDeEsteTelefono = 9;
constexpr int ultimaClase = 11;
constexpr int claseQueNoSeGuarda = 5; // its keys end with each start of the phone

QByteArray numero(quint32 valor)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(valor, bytes.data());
    return bytes;
}

QByteArray valor(const char *etiqueta, const QByteArray &bytes)
{
    return etiqueta + numero(quint32(bytes.size())) + bytes;
}

using Parte = QHash<QByteArray, QByteArray>;

QList<Parte> partes(const QByteArray &bolsa)
{
    QList<Parte> todas{Parte()};
    for (qsizetype i = 0; i + 8 <= bolsa.size();) {
        const QByteArray etiqueta = bolsa.sliced(i, 4);
        const qsizetype largo = qsizetype(qFromBigEndian<quint32>(bolsa.constData() + i + 4));
        if (etiqueta == "UUID" && todas.last().contains(etiqueta))
            todas.append(Parte());
        todas.last().insert(etiqueta, bolsa.mid(i + 8, largo));
        i += 8 + largo;
    }
    return todas;
}

int entero(const Parte &parte, const char *etiqueta)
{
    const QByteArray bytes = parte.value(etiqueta);
    return bytes.size() == 4 ? int(qFromBigEndian<quint32>(bytes.constData())) : 0;
}

} // namespace

LlavesDeCopia LlavesDeCopia::nuevas(const QString &contrasena, int rondasPrevias)
{
    LlavesDeCopia llaves;
    const QByteArray sal = alAzar(20);
    const QByteArray salPrevia = alAzar(20);
    const QByteArray deContrasena = claveDeContrasena(contrasena.toUtf8(), salPrevia, rondasPrevias, sal, rondas);
    QByteArray &bolsa = llaves.bolsa_;
    bolsa = valor("VERS", numero(5)) + valor("TYPE", numero(1)) + valor("UUID", alAzar(16)) +
            valor("HMCK", alAzar(40)) + valor("WRAP", numero(0)) + valor("SALT", sal) + valor("ITER", numero(rondas)) +
            valor("DPWT", numero(0)) + valor("DPIC", numero(quint32(rondasPrevias))) + valor("DPSL", salPrevia);
    for (int clase = 1; clase <= ultimaClase; ++clase) {
        if (clase == claseQueNoSeGuarda)
            continue;
        const QByteArray clave = alAzar(32);
        const bool deEste = clase >= primeraDeEsteTelefono;
        // The password takes off the outer wrapping of all; what it finds under that of 3 is still the phone's.
        const QByteArray envuelta = envolverClave(deContrasena, deEste ? alAzar(32) : clave);
        llaves.porClase_.insert(clase, clave);
        bolsa += valor("UUID", alAzar(16)) + valor("CLAS", numero(quint32(clase))) +
                 valor("WRAP", numero(deEste ? contrasenaYTelefono : soloContrasena)) + valor("KTYP", numero(0)) +
                 valor("WPKY", envuelta);
    }
    return llaves;
}

LlavesDeCopia LlavesDeCopia::delTelefono()
{
    LlavesDeCopia llaves;
    for (int clase = 1; clase <= ultimaClase; ++clase)
        llaves.porClase_.insert(clase, alAzar(32));
    return llaves;
}

std::optional<LlavesDeCopia> LlavesDeCopia::abrir(const QByteArray &bolsa, const QString &contrasena)
{
    const QList<Parte> todas = partes(bolsa);
    const Parte &cabeza = todas.first();
    if (entero(cabeza, "DPIC") < 1 || entero(cabeza, "ITER") < 1)
        return {};
    const QByteArray deContrasena = claveDeContrasena(contrasena.toUtf8(), cabeza["DPSL"], entero(cabeza, "DPIC"),
                                                      cabeza["SALT"], entero(cabeza, "ITER"));
    LlavesDeCopia llaves;
    llaves.bolsa_ = bolsa;
    for (const Parte &parte : todas.mid(1)) {
        if (entero(parte, "WRAP") != int(soloContrasena))
            continue;
        const auto clave = desenvolverClave(deContrasena, parte["WPKY"]);
        if (!clave)
            return {};
        llaves.porClase_.insert(entero(parte, "CLAS"), *clave);
    }
    return llaves.porClase_.isEmpty() ? std::nullopt : std::optional(llaves);
}

QByteArray LlavesDeCopia::envolver(int clase, const QByteArray &clave) const
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(quint32(clase), bytes.data());
    return bytes + envolverClave(porClase_.value(clase), clave);
}

std::optional<QByteArray> LlavesDeCopia::desenvolver(const QByteArray &claseYClave) const
{
    if (claseYClave.size() != 44)
        return {};
    const auto clase = int(qFromLittleEndian<quint32>(claseYClave.constData()));
    return porClase_.contains(clase) ? desenvolverClave(porClase_[clase], claseYClave.sliced(4)) : std::nullopt;
}

} // namespace simulado
