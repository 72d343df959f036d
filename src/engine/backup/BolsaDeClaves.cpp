#include "engine/backup/BolsaDeClaves.h"

#include <QHash>
#include <QtEndian>

#include <openssl/crypto.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr quint32 soloContrasena = 2;
const auto danada = u"Las claves de la copia están dañadas. Haz una copia nueva."_s;
const auto desmedida =
    u"La copia pide una cuenta desmedida para abrir sus claves, así que no la abro: parece dañada."_s;

using Valores = QHash<QByteArray, QByteArray>;

/// The head, then one part for each class; empty when a length lies.
std::vector<Valores> partir(QByteArray bytes)
{
    std::vector<Valores> partes(1);
    while (!bytes.isEmpty()) {
        if (bytes.size() < 8)
            return {};
        const auto etiqueta = bytes.first(4);
        const qint64 largo = qFromBigEndian<quint32>(bytes.constData() + 4);
        if (largo > bytes.size() - 8)
            return {};
        // The head has a UUID of its own; each further one begins a class.
        if (etiqueta == "UUID" && partes.back().contains(etiqueta))
            partes.emplace_back();
        partes.back()[etiqueta] = bytes.sliced(8, largo);
        bytes.remove(0, 8 + largo);
    }
    return partes;
}

std::optional<quint32> numero(const QByteArray &valor)
{
    return valor.size() == 4 ? std::optional(qFromBigEndian<quint32>(valor.constData())) : std::nullopt;
}

} // namespace

std::optional<Clave> ClavesDeClase::abrir(QByteArrayView claseYClave) const
{
    if (claseYClave.size() != 4 + largoEnvuelta)
        return {};
    return abrir(qFromLittleEndian<quint32>(claseYClave.data()), claseYClave.sliced(4));
}

std::optional<Clave> ClavesDeClase::abrir(quint32 clase, QByteArrayView envuelta) const
{
    const auto suya = porClase.find(clase);
    return suya == porClase.end() ? std::nullopt : desenvolver(suya->second, envuelta);
}

Resultado<BolsaDeClaves> BolsaDeClaves::leer(const QByteArray &bytes)
{
    const auto partes = partir(bytes);
    if (partes.size() < 2)
        return Resultado<BolsaDeClaves>::fallo(danada);

    BolsaDeClaves bolsa;
    const auto &cabeza = partes.front();
    bolsa.sal = cabeza.value("SALT");
    bolsa.salPrevia = cabeza.value("DPSL");
    const auto rondas = numero(cabeza.value("ITER"));
    const auto rondasPrevias = bolsa.salPrevia.isEmpty() ? 1 : numero(cabeza.value("DPIC"));
    if (bolsa.sal.isEmpty() || rondas < 1U || rondasPrevias < 1U)
        return Resultado<BolsaDeClaves>::fallo(danada);
    if (*rondas > maximoDeRondas || *rondasPrevias > maximoDeRondas)
        return Resultado<BolsaDeClaves>::fallo(desmedida);
    bolsa.rondas = static_cast<int>(*rondas);
    bolsa.rondasPrevias = static_cast<int>(*rondasPrevias);

    for (auto parte = partes.begin() + 1; parte != partes.end(); ++parte) {
        const auto clase = numero(parte->value("CLAS"));
        if (clase && numero(parte->value("WRAP")) == soloContrasena)
            bolsa.envueltas[*clase] = parte->value("WPKY");
    }
    if (bolsa.envueltas.empty())
        return Resultado<BolsaDeClaves>::fallo(danada);
    return bolsa;
}

Resultado<ClavesDeClase> BolsaDeClaves::abrir(const QString &contrasena) const
{
    auto secreto = contrasena.toUtf8();
    std::optional<Clave> clave;
    if (salPrevia.isEmpty()) {
        clave = derivar(secreto, sal, rondas, Resumen::Sha1);
    } else if (const auto previa = derivar(secreto, salPrevia, rondasPrevias, Resumen::Sha256)) {
        const QByteArrayView bytes(previa->bytes(), Clave::largo);
        clave = derivar(bytes, sal, rondas, Resumen::Sha1);
    }
    OPENSSL_cleanse(secreto.data(), static_cast<size_t>(secreto.size()));

    ClavesDeClase claves;
    for (const auto &[clase, envuelta] : envueltas) {
        if (const auto abierta = clave ? desenvolver(*clave, envuelta) : std::nullopt)
            claves.porClase.emplace(clase, *abierta);
    }
    if (claves.porClase.empty())
        return Resultado<ClavesDeClase>::fallo(u"La contraseña guardada no es la de esta copia."_s);
    return claves;
}

} // namespace vellora::motor
