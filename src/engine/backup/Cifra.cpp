#include "engine/backup/Cifra.h"

#include <algorithm>
#include <openssl/crypto.h>

namespace vellora::motor
{

namespace
{

const unsigned char *octetos(QByteArrayView bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.data());
}

} // namespace

Clave::~Clave()
{
    OPENSSL_cleanse(octetos.data(), octetos.size());
}

std::optional<Clave> desenvolver(const Clave &con, QByteArrayView envuelta)
{
    if (envuelta.size() != largoEnvuelta)
        return {};
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> contexto(EVP_CIPHER_CTX_new(),
                                                                                   &EVP_CIPHER_CTX_free);
    EVP_CIPHER_CTX_set_flags(contexto.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
    // The provider may write the eight bytes of the check too before it drops them.
    std::array<unsigned char, largoEnvuelta> abierta{};
    int escritos = 0;
    const bool bien =
        EVP_DecryptInit_ex(contexto.get(), EVP_aes_256_wrap(), nullptr, con.bytes(), nullptr) == 1 &&
        EVP_DecryptUpdate(contexto.get(), abierta.data(), &escritos, octetos(envuelta), largoEnvuelta) == 1 &&
        escritos == Clave::largo;
    Clave clave;
    std::copy_n(abierta.data(), Clave::largo, clave.bytes());
    OPENSSL_cleanse(abierta.data(), abierta.size());
    return bien ? std::optional(clave) : std::nullopt;
}

std::optional<Clave> derivar(QByteArrayView secreto, QByteArrayView sal, int rondas, Resumen con)
{
    Clave clave;
    const auto *resumen = con == Resumen::Sha1 ? EVP_sha1() : EVP_sha256();
    const bool bien =
        PKCS5_PBKDF2_HMAC(secreto.data(), static_cast<int>(secreto.size()), octetos(sal), static_cast<int>(sal.size()),
                          rondas, resumen, Clave::largo, clave.bytes()) == 1;
    return bien ? std::optional(clave) : std::nullopt;
}

DescifradorCbc::DescifradorCbc(const Clave &clave) : contexto(EVP_CIPHER_CTX_new())
{
    const std::array<unsigned char, largoDeBloque> ceros{};
    EVP_DecryptInit_ex(contexto.get(), EVP_aes_256_cbc(), nullptr, clave.bytes(), ceros.data());
    EVP_CIPHER_CTX_set_padding(contexto.get(), 0);
}

bool DescifradorCbc::descifrar(unsigned char *bytes, int largo)
{
    int escritos = 0;
    return EVP_DecryptUpdate(contexto.get(), bytes, &escritos, bytes, largo) == 1 && escritos == largo;
}

int largoDelRelleno(QByteArrayView ultimoBloque)
{
    const auto largo = static_cast<unsigned char>(ultimoBloque.back());
    if (largo < 1 || largo > ultimoBloque.size())
        return 0;
    const auto final = ultimoBloque.last(largo);
    return std::all_of(final.begin(), final.end(), [&](char octeto) { return octeto == ultimoBloque.back(); }) ? largo
                                                                                                               : 0;
}

} // namespace vellora::motor
