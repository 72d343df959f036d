#pragma once

#include <QByteArray>
#include <QString>

namespace simulado
{

class LlavesDeCopia;

/// keychain-backup.plist of the phone in that folder (its llavero.json), each item under the key of its class.
/// Empty when the phone has no keychain.
QByteArray llaveroParaCopia(const QString &carpetaDelTelefono, const LlavesDeCopia &llaves);

} // namespace simulado
