#pragma once

#include <QString>

#include <optional>

/// The computer's secret store (Secret Service): one password for each key, which is the UDID of the phone for the
/// password of its backups. All of it waits for another program, some seconds at the most where nothing is asked of the
/// owner: background threads only, by `enSegundoPlano`. `guardar` and `Abrir::Preguntando` may bring up the question
/// that unlocks the store, and wait for its answer then.
namespace vellora::Llavero
{

enum class Estado {
    Hallada,    ///< the password is there
    SinClave,   ///< the store answers, and has none of this key
    Cerrado,    ///< it has one, or may have one, and is locked
    NoContesta, ///< there is a store, and it did not answer in time
    NoHay       ///< no store, or none that anything could be kept in
};
struct Lectura {
    Estado estado = Estado::NoHay;
    QString clave; ///< empty unless `Hallada`
};
enum class Abrir { SinPreguntar, Preguntando };
/// What the store holds of the key. A password that an earlier version kept under its own name of service is moved to
/// the current one; one that is no text counts as none.
Lectura consultar(const QString &udid, Abrir abrir = Abrir::SinPreguntar);
/// Why there is no password, for the owner; empty for `Hallada`.
QString porQue(Estado estado);

/// True when there is a store to keep a password in, locked or not.
bool disponible();

/// True when the password was written, in place of the former one.
bool guardar(const QString &clave, const QString &udid);
/// Where the reason for its absence makes no difference.
std::optional<QString> leer(const QString &udid);
bool hayClave(const QString &udid);
/// Keeps a saved password of the phone beside those of the computer's programs, under where it is for and whose it is.
bool guardarContrasena(const QString &donde, const QString &usuario, const QString &clave);
/// Removes it under both names; true when there was one.
bool borrar(const QString &udid);

} // namespace vellora::Llavero
