#pragma once

#include "core/Resultado.h"
#include "engine/backup/Cifra.h"

#include <QByteArray>
#include <QString>

#include <map>

namespace vellora::motor
{

/// The class keys of a backup, open: each file's own key is wrapped by the one of its protection class. Any thread.
class ClavesDeClase
{
public:
    /// Opens what Manifest.plist and Manifest.db hold for a file: the class (four bytes, little-endian) and the wrapped
    /// key. Absent when the class cannot be opened with the password or the bytes are damaged.
    std::optional<Clave> abrir(QByteArrayView claseYClave) const;
    std::optional<Clave> abrir(quint32 clase, QByteArrayView envuelta) const;

    std::map<quint32, Clave> porClase;
};

/// The key bag of an encrypted backup: a row of tag (four letters), length (four bytes, big-endian) and value. A head
/// with the salts and rounds of the password, then the wrapped key of each class.
class BolsaDeClaves
{
public:
    /// What the phone asks for is 10,000,000 and 10,000. A bag that asks for far more would hold the computer for
    /// hours.
    static constexpr int maximoDeRondas = 20'000'000;

    static Resultado<BolsaDeClaves> leer(const QByteArray &bytes);
    /// Takes seconds. A password that opens no class is the wrong one.
    Resultado<ClavesDeClase> abrir(const QString &contrasena) const;

private:
    QByteArray sal;
    int rondas = 0;
    QByteArray salPrevia; ///< empty in the bags from before the long derivation (iOS 10.2)
    int rondasPrevias = 0;
    std::map<quint32, QByteArray> envueltas; ///< by class, those that need nothing but the password
};

} // namespace vellora::motor
