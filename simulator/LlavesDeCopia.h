#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

namespace simulado
{

/// The keys of an encrypted backup: one for each protection class, all wrapped by the password in the key bag.
class LlavesDeCopia
{
public:
    static constexpr int rondasDeVerdad = 10'000'000; ///< about six seconds of one core

    /// Fresh keys for a password.
    static LlavesDeCopia nuevas(const QString &contrasena, int rondas = rondasDeVerdad);
    /// Keys that nobody has the password of: what protects the keychain in a backup that is not encrypted.
    static LlavesDeCopia delTelefono();
    /// Those of a stored key bag. Absent when the password is another, or the bag is damaged.
    static std::optional<LlavesDeCopia> abrir(const QByteArray &bolsa, const QString &contrasena);

    const QByteArray &bolsa() const { return bolsa_; }
    /// The class (four bytes, little-endian) and the wrapped key, as a manifest holds them.
    QByteArray envolver(int clase, const QByteArray &clave) const;
    std::optional<QByteArray> desenvolver(const QByteArray &claseYClave) const;

private:
    QMap<int, QByteArray> porClase_;
    QByteArray bolsa_;
};

} // namespace simulado
