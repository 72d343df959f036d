#pragma once

#include <QString>

#include <optional>

/// The computer's secret store (Secret Service): one password for each key, which is the UDID of the phone for the
/// password of its backups. Synchronous; any thread. Only `guardar` may bring up the question that unlocks the store,
/// and waits for its answer then; a locked store reads as one that holds nothing.
namespace vellora::Llavero
{

/// True when there is a store to keep a password in, locked or not.
bool disponible();

/// True when the password was written, in place of the former one.
bool guardar(const QString &clave, const QString &udid);
/// Absent without a store, while it is locked, and when what it holds is no text.
/// A password that an earlier version kept under its own name of service is moved to the current one.
std::optional<QString> leer(const QString &udid);
bool hayClave(const QString &udid);
/// Keeps a saved password of the phone beside those of the computer's programs, under where it is for and whose it is.
bool guardarContrasena(const QString &donde, const QString &usuario, const QString &clave);
/// Removes it under both names; true when there was one.
bool borrar(const QString &udid);

} // namespace vellora::Llavero
