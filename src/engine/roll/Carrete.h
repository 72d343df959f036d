#pragma once

#include "engine/device/Conexiones.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

/// The camera roll as the file service shows it: the photos and videos of `/DCIM` with their side files (`.AAE`), and
/// what the Photos app keeps of their edits under `/PhotoData/Mutations`.
namespace vellora::motor
{

/// One file of the roll.
struct FicheroDelCarrete {
    QString ruta;        ///< on the phone
    QByteArray relativa; ///< under a folder of photos, in UTF-8: "100APPLE/IMG_0001.HEIC"
    FichaAfc ficha;
};

struct Carrete {
    std::vector<FicheroDelCarrete> ficheros; ///< in the order of `relativa`
    QStringList problemas;                   ///< what the phone refused to show, a sentence each
};

constexpr auto carpetaDelCarrete = "/DCIM";
constexpr auto carpetaDeRetoques = "/PhotoData/Mutations";
constexpr auto carpetaDeMiniaturas = "/PhotoData/Thumbnails";

/// Lists the whole roll. Fails when the phone is gone, or the engine was asked to end.
Resultado<Carrete> leerCarrete(Conexiones &conexiones);

/// Where a file of the roll is kept on the computer: the phone's own folders, and an edit beside its original under the
/// name that the phone gives it elsewhere (IMG_E0001). Absent for what is no file of the roll.
std::optional<QByteArray> sitioLocal(const QString &ruta);

/// The name that a file takes when others have its own: "100APPLE/IMG_0001 (2).HEIC". The first time is its own.
QByteArray otroNombre(const QByteArray &relativa, int vez);

/// What a person sees as one photo: the same for both files of a Live Photo, for an edit and for its side file.
/// `relativa` as in `FicheroDelCarrete`.
QByteArray elementoDe(QByteArrayView relativa);
/// The number of those.
qint64 contarElementos(const Carrete &carrete);

enum class TipoDeFichero { Foto, Video, Ajustes };
TipoDeFichero tipoDe(QByteArrayView relativa);

/// The files of folders of the phone and all below them, by their paths, in no order. What is refused goes to
/// `problemas`; a folder that is not there holds nothing.
Resultado<std::vector<std::pair<QString, FichaAfc>>> recorrer(Conexiones &conexiones, const QStringList &carpetas,
                                                              QStringList &problemas);

} // namespace vellora::motor
