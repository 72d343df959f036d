#pragma once

#include "InventarioDeCopia.h"
#include "LlavesDeCopia.h"

#include <QVariantMap>

#include <optional>

/// What a backup of a phone consists of, whichever way it travels.
namespace simulado
{

/// The inventory of a backup with these keys, or without: what iOS keeps out of an unencrypted backup (health, calls,
/// the browser's history) is missing then, and nobody can open the keychain. `temporal` is an existing folder where
/// the keychain's file is made; it must outlive the copying.
QList<EntradaDeCopia> entradasDeCopia(const QString &carpetaDelTelefono, const std::optional<LlavesDeCopia> &llaves,
                                      const QString &temporal);
/// Gives each file that has none a key of its own. Nothing without keys.
void ponClave(EntradaDeCopia &entrada, const std::optional<LlavesDeCopia> &llaves);

/// Class that wraps the key of Manifest.db.
constexpr int claseDelManifiesto = 4;

/// Manifest.plist. `general` and `sincronizacion`: lockdown values of the general domain and of data_sync.
QByteArray manifiestoPlist(const QVariantMap &general, const QVariantMap &sincronizacion,
                           const std::optional<LlavesDeCopia> &llaves, const QByteArray &claveDelManifiesto);
/// Status.plist; `momento` is "uploading" or "finished".
QByteArray estadoPlist(const QString &uuid, bool completa, const QString &momento);

} // namespace simulado
