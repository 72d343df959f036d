#pragma once

#include <QByteArray>
#include <QIODevice>

#include <memory>
#include <openssl/evp.h>
#include <optional>

/// What the phone's backups use of cryptography, over OpenSSL. Keys are 32 bytes.
namespace simulado
{

QByteArray alAzar(int cuantos);
/// AES key wrap (RFC 3394): 40 bytes. Unwrapping is absent when the check fails.
QByteArray envolverClave(const QByteArray &con, const QByteArray &clave);
std::optional<QByteArray> desenvolverClave(const QByteArray &con, const QByteArray &envuelta);
/// PBKDF2-HMAC-SHA256, then PBKDF2-HMAC-SHA1 over its result.
QByteArray claveDeContrasena(const QByteArray &contrasena, const QByteArray &salPrevia, int rondasPrevias,
                             const QByteArray &sal, int rondas);
/// What is read from it is the source's text, ciphered: AES-256-CBC from an initial vector of zeros, padded (PKCS#7).
class LectorCifrado : public QIODevice
{
public:
    LectorCifrado(QIODevice &origen, const QByteArray &clave);
    bool isSequential() const override { return true; }
    qint64 leidos() const { return leidos_; } ///< bytes of the source so far

protected:
    qint64 readData(char *datos, qint64 maximo) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    struct Liberar {
        void operator()(EVP_CIPHER_CTX *contexto) const { EVP_CIPHER_CTX_free(contexto); }
    };
    QIODevice &origen_;
    std::unique_ptr<EVP_CIPHER_CTX, Liberar> contexto_;
    QByteArray entrada_;
    QByteArray sobra_; ///< ciphered already, beyond what was asked for
    qint64 leidos_ = 0;
    bool acabado_ = false;
};
/// The inverse, from one open device to another. False when reading, writing or the padding failed.
bool descifrarFlujo(QIODevice &origen, QIODevice &destino, const QByteArray &clave);
/// A file in place of its ciphered self.
bool descifrarEnSitio(const QString &ruta, const QByteArray &clave);
/// AES-256-GCM with an initial vector of no length, as the keychain: the text, then a tag of 16 bytes.
QByteArray cifrarGcmSinVector(const QByteArray &clave, const QByteArray &claro);

} // namespace simulado
