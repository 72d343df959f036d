#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <memory>
#include <openssl/evp.h>
#include <optional>

namespace vellora::motor
{

/// The SHA-256 of bytes as they come: what is known of a file's content once it has been read. One thread.
class Huella
{
public:
    static constexpr qsizetype largo = 32;

    Huella();
    void poner(QByteArrayView bytes);
    /// Once, at the end; `largo` bytes, or empty when the library failed.
    QByteArray sacar();

private:
    struct Liberar {
        void operator()(EVP_MD_CTX *contexto) const { EVP_MD_CTX_free(contexto); }
    };
    std::unique_ptr<EVP_MD_CTX, Liberar> contexto;
    bool bien;
};

/// Of an open file, from its beginning to its end. Absent when it cannot be read whole, or the engine was asked to end.
std::optional<QByteArray> huellaDe(int descriptor);

} // namespace vellora::motor
