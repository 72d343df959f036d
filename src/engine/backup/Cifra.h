#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <memory>
#include <openssl/evp.h>
#include <optional>

/// The ciphers of an encrypted backup, over OpenSSL. Any thread; an object belongs to one at a time.
namespace vellora::motor
{

/// An AES-256 key; wiped when it goes.
class Clave
{
public:
    static constexpr int largo = 32;

    Clave() = default;
    Clave(const Clave &) = default;
    Clave &operator=(const Clave &) = default;
    ~Clave();

    unsigned char *bytes() { return octetos.data(); }
    const unsigned char *bytes() const { return octetos.data(); }

private:
    std::array<unsigned char, largo> octetos{};
};

/// Length of a key wrapped by another one (RFC 3394): eight bytes of check besides the key.
constexpr qsizetype largoEnvuelta = Clave::largo + 8;

/// Unwraps a key (RFC 3394). Absent when the check fails: another key wrapped it, or the bytes are damaged.
std::optional<Clave> desenvolver(const Clave &con, QByteArrayView envuelta);

enum class Resumen { Sha1, Sha256 };
/// PBKDF2-HMAC. `rondas` from 1 on; ten million take seconds and cannot be cut short.
std::optional<Clave> derivar(QByteArrayView secreto, QByteArrayView sal, int rondas, Resumen con);

/// AES-256-CBC from an initial vector of zeros, as every file of a backup, block after block.
class DescifradorCbc
{
public:
    static constexpr int largoDeBloque = 16;

    explicit DescifradorCbc(const Clave &clave);
    /// Deciphers in place. `largo` is a multiple of `largoDeBloque`.
    bool descifrar(unsigned char *bytes, int largo);

private:
    struct Liberar {
        void operator()(EVP_CIPHER_CTX *contexto) const { EVP_CIPHER_CTX_free(contexto); }
    };
    std::unique_ptr<EVP_CIPHER_CTX, Liberar> contexto;
};

/// Bytes of padding (PKCS#7) that the last block of a deciphered text ends in; 0 when it is no such ending.
int largoDelRelleno(QByteArrayView ultimoBloque);

} // namespace vellora::motor
