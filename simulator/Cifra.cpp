#include "Cifra.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <openssl/rand.h>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

using Contexto = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

Contexto contexto()
{
    return {EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free};
}

const unsigned char *octetos(const QByteArray &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.constData());
}

unsigned char *octetos(QByteArray &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

QByteArray bloqueCifrado(const QByteArray &clave, const QByteArray &bloque)
{
    QByteArray salida(32, '\0');
    int escritos = 0;
    const auto ctx = contexto();
    EVP_EncryptInit_ex(ctx.get(), EVP_aes_256_ecb(), nullptr, octetos(clave), nullptr);
    EVP_EncryptUpdate(ctx.get(), octetos(salida), &escritos, octetos(bloque), 16);
    return salida.first(16);
}

/// Product in the field of GCM: bit by bit, for a keychain's few kilobytes.
std::array<quint64, 2> producto(std::array<quint64, 2> x, std::array<quint64, 2> y)
{
    std::array<quint64, 2> z{};
    for (int bit = 0; bit < 128; ++bit) {
        if ((x[size_t(bit / 64)] >> (63 - bit % 64) & 1U) != 0) {
            z[0] ^= y[0];
            z[1] ^= y[1];
        }
        const bool acarreo = (y[1] & 1U) != 0;
        y[1] = y[1] >> 1U | y[0] << 63U;
        y[0] >>= 1U;
        if (acarreo)
            y[0] ^= 0xE1ULL << 56U;
    }
    return z;
}

std::array<quint64, 2> enNumeros(const QByteArray &bloque)
{
    return {qFromBigEndian<quint64>(bloque.constData()), qFromBigEndian<quint64>(bloque.constData() + 8)};
}

} // namespace

QByteArray alAzar(int cuantos)
{
    QByteArray bytes(cuantos, '\0');
    RAND_bytes(octetos(bytes), cuantos);
    return bytes;
}

QByteArray envolverClave(const QByteArray &con, const QByteArray &clave)
{
    const auto ctx = contexto();
    EVP_CIPHER_CTX_set_flags(ctx.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
    EVP_EncryptInit_ex(ctx.get(), EVP_aes_256_wrap(), nullptr, octetos(con), nullptr);
    QByteArray envuelta(clave.size() + 8, '\0');
    int escritos = 0;
    EVP_EncryptUpdate(ctx.get(), octetos(envuelta), &escritos, octetos(clave), int(clave.size()));
    return envuelta;
}

std::optional<QByteArray> desenvolverClave(const QByteArray &con, const QByteArray &envuelta)
{
    const auto ctx = contexto();
    EVP_CIPHER_CTX_set_flags(ctx.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
    EVP_DecryptInit_ex(ctx.get(), EVP_aes_256_wrap(), nullptr, octetos(con), nullptr);
    QByteArray clave(envuelta.size() + 8, '\0');
    int escritos = 0;
    if (envuelta.size() != 40 ||
        EVP_DecryptUpdate(ctx.get(), octetos(clave), &escritos, octetos(envuelta), int(envuelta.size())) != 1)
        return {};
    return clave.first(escritos);
}

QByteArray claveDeContrasena(const QByteArray &contrasena, const QByteArray &salPrevia, int rondasPrevias,
                             const QByteArray &sal, int rondas)
{
    QByteArray previa(32, '\0');
    QByteArray clave(32, '\0');
    PKCS5_PBKDF2_HMAC(contrasena.constData(), int(contrasena.size()), octetos(salPrevia), int(salPrevia.size()),
                      rondasPrevias, EVP_sha256(), 32, octetos(previa));
    PKCS5_PBKDF2_HMAC(previa.constData(), 32, octetos(sal), int(sal.size()), rondas, EVP_sha1(), 32, octetos(clave));
    return clave;
}

LectorCifrado::LectorCifrado(QIODevice &origen, const QByteArray &clave)
    : origen_(origen), contexto_(EVP_CIPHER_CTX_new()), entrada_(1 << 20, Qt::Uninitialized)
{
    const QByteArray vector(16, '\0');
    EVP_EncryptInit_ex(contexto_.get(), EVP_aes_256_cbc(), nullptr, octetos(clave), octetos(vector));
    setOpenMode(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 LectorCifrado::readData(char *datos, qint64 maximo)
{
    while (sobra_.isEmpty() && !acabado_) {
        const qint64 n = origen_.read(entrada_.data(), entrada_.size());
        if (n < 0)
            return -1;
        leidos_ += n;
        acabado_ = n == 0;
        sobra_.resize(n + 32);
        int escritos = 0;
        if (acabado_)
            EVP_EncryptFinal_ex(contexto_.get(), octetos(sobra_), &escritos);
        else
            EVP_EncryptUpdate(contexto_.get(), octetos(sobra_), &escritos, octetos(entrada_), int(n));
        sobra_.resize(escritos);
    }
    const qint64 da = std::min<qint64>(maximo, sobra_.size());
    std::copy_n(sobra_.constData(), da, datos);
    sobra_.remove(0, da);
    return da;
}

bool descifrarFlujo(QIODevice &origen, QIODevice &destino, const QByteArray &clave)
{
    constexpr int tramo = 1 << 20;
    const QByteArray vector(16, '\0');
    const auto ctx = contexto();
    EVP_DecryptInit_ex(ctx.get(), EVP_aes_256_cbc(), nullptr, octetos(clave), octetos(vector));
    QByteArray salida(tramo + 32, Qt::Uninitialized);
    int escritos = 0;
    for (QByteArray entrada = origen.read(tramo); !entrada.isEmpty(); entrada = origen.read(tramo)) {
        EVP_DecryptUpdate(ctx.get(), octetos(salida), &escritos, octetos(entrada), int(entrada.size()));
        if (destino.write(salida.constData(), escritos) != escritos)
            return false;
    }
    return EVP_DecryptFinal_ex(ctx.get(), octetos(salida), &escritos) == 1 &&
           destino.write(salida.constData(), escritos) == escritos;
}

bool descifrarEnSitio(const QString &ruta, const QByteArray &clave)
{
    QFile cifrado(ruta);
    QFile claro(ruta + u".claro"_s);
    return cifrado.open(QIODevice::ReadOnly) && claro.open(QIODevice::WriteOnly) &&
           descifrarFlujo(cifrado, claro, clave) && cifrado.remove() && claro.rename(ruta);
}

QByteArray cifrarGcmSinVector(const QByteArray &clave, const QByteArray &claro)
{
    // Without a vector the first counter block is all zeros; the text begins with the next one.
    const QByteArray ceros(16, '\0');
    const QByteArray huella = bloqueCifrado(clave, ceros);
    QByteArray cifrado = claro;
    for (qsizetype i = 0; i < claro.size(); i += 16) {
        QByteArray contador = ceros;
        qToBigEndian(quint32(i / 16 + 1), contador.data() + 12);
        const QByteArray mascara = bloqueCifrado(clave, contador);
        for (qsizetype j = i; j < std::min(i + 16, claro.size()); ++j)
            cifrado[j] = char(cifrado[j] ^ mascara[j - i]);
    }
    QByteArray sumado = cifrado + QByteArray((16 - cifrado.size() % 16) % 16, '\0');
    QByteArray largos(16, '\0');
    qToBigEndian(quint64(cifrado.size()) * 8, largos.data() + 8);
    sumado += largos;
    std::array<quint64, 2> suma{};
    for (qsizetype i = 0; i < sumado.size(); i += 16) {
        const auto bloque = enNumeros(sumado.sliced(i, 16));
        suma = producto({suma[0] ^ bloque[0], suma[1] ^ bloque[1]}, enNumeros(huella));
    }
    const auto tapa = enNumeros(huella);
    QByteArray sello(16, '\0');
    qToBigEndian(suma[0] ^ tapa[0], sello.data());
    qToBigEndian(suma[1] ^ tapa[1], sello.data() + 8);
    return cifrado + sello;
}

} // namespace simulado
