#pragma once

#include "engine/backup/BolsaDeClaves.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace vellora::motor
{

/// One password of the phone's keychain.
struct ClaveDelLlavero {
    QString tipo;    ///< "wifi", "internet" or "app"
    QString donde;   ///< network, site or app
    QString usuario; ///< empty for a network
    QString clave;
};

struct LlaveroAbierto {
    QList<ClaveDelLlavero> claves; ///< in the order of the keychain
    qint64 cerradas = 0;           ///< bound to the phone itself, or damaged
    qint64 sinTexto = 0;           ///< keys of programs that nobody could type
};

/// The passwords of keychain-backup.plist, deciphered, as an encrypted backup holds it: the arrays "genp" (apps, and
/// networks under the service "AirPort") and "inet" (sites), each item with its own wrapped key. Certificates and keys
/// are no passwords and are passed over. Absent when it is no keychain. Any thread.
std::optional<LlaveroAbierto> abrirLlavero(const QByteArray &plist, const ClavesDeClase &claves);

/// The attributes of one deciphered item: DER, a SET of SEQUENCE {name, value}. Empty for anything else.
QList<std::pair<QByteArray, QByteArray>> atributosDe(QByteArrayView der);

} // namespace vellora::motor
