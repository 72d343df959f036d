#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

/// The names of the phone's photos, there and on the computer.
namespace vellora::motor
{

/// Where a file of the roll, or of what the phone keeps outside of it, is kept on the computer: the phone's own folders
/// (the latter under "CPLAssets"), and an edit beside its original under the name that the phone gives it elsewhere
/// (IMG_E0001). A name that no disk takes becomes a plain one. Absent for anything else, and for ways out.
std::optional<QByteArray> sitioLocal(const QString &ruta);

/// The name that a file takes when others have its own: "100APPLE/IMG_0001 (2).HEIC". The first time is its own.
QByteArray otroNombre(const QByteArray &relativa, int vez);

/// Of a path of the phone: kept outside of its roll, to be copied and never deleted.
bool seGuardaFuera(const QString &ruta);

/// A plainer name for each part of a path that a disk may not take: bytes that are no UTF-8, signs that other systems
/// forbid and length, told apart by a few letters of the digest of what stood there. Other names stay as they are.
QByteArray nombreLlano(const QByteArray &relativa);

/// What a person sees as one photo: the same for both files of a Live Photo, for an edit and for its side file.
/// `relativa` as in `FicheroDelCarrete`.
QByteArray elementoDe(QByteArrayView relativa);
/// An edit that stands beside its original. `relativa` as before.
bool esRetoque(QByteArrayView relativa);

enum class TipoDeFichero { Foto, Video, Ajustes };
TipoDeFichero tipoDe(QByteArrayView relativa);

} // namespace vellora::motor
