#pragma once

#include "engine/device/Conexiones.h"
#include "engine/roll/NombresDelCarrete.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

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
    /// What the phone keeps outside of its roll (`/PhotoData/CPLAssets`, and the edits of it): the owner's photos too,
    /// copied and shown like the others and never deleted, since the phone's own services manage that folder.
    std::vector<FicheroDelCarrete> aparte; ///< in the order of `relativa`
    QStringList problemas;                 ///< what the phone refused to show, a sentence each
};

constexpr auto carpetaDelCarrete = "/DCIM";
constexpr auto carpetaDeRetoques = "/PhotoData/Mutations/DCIM";
constexpr auto carpetaDeFuera = "/PhotoData/CPLAssets";
constexpr auto carpetaDeRetoquesDeFuera = "/PhotoData/Mutations/PhotoData/CPLAssets";
constexpr auto carpetaDeMiniaturas = "/PhotoData/Thumbnails";

/// Lists the whole roll. Fails when the phone is gone, or the engine was asked to end.
Resultado<Carrete> leerCarrete(Conexiones &conexiones);

/// The number of what a person sees as one photo, of those that can be deleted (see `elementoDe`).
qint64 contarElementos(const Carrete &carrete);

/// The files of folders of the phone and all below them, by their paths, in no order. What is refused goes to
/// `problemas`; a folder that is not there holds nothing.
Resultado<std::vector<std::pair<QString, FichaAfc>>> recorrer(Conexiones &conexiones, const QStringList &carpetas,
                                                              QStringList &problemas);

} // namespace vellora::motor
