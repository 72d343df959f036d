#pragma once

#include "engine/device/Afc.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <unordered_map>

namespace vellora::motor
{

enum class EstadoDeFoto { Visible, Oculta, Papelera };

/// What the Photos app of the phone knows of the files of the roll, by their place in it ("100APPLE/IMG_0001.HEIC").
using BaseDeFotos = std::unordered_map<std::string, EstadoDeFoto>;

/// All that the list tells of photos.
struct ListaDeFotos {
    BaseDeFotos delCarrete;
    BaseDeFotos deFuera; ///< in `/PhotoData/CPLAssets`, by their place on the computer (see `sitioLocal`)
    // Those of other folders, which the phone manages alone; none in its trash among them.
    qint64 compartidas = 0;         ///< of shared albums
    qint64 sincronizadas = 0;       ///< put there by a computer
    qint64 deOtrosSitios = 0;       ///< of other apps
    QStringList albumesCompartidos; ///< their titles, a few
};
/// Reads it as `leerBaseDeFotos` does.
std::optional<ListaDeFotos> leerListaDeFotos(Afc &afc);

/// Reads the app's list (`/PhotoData/Photos.sqlite`, table ZASSET, ZGENERICASSET before iOS 14) in a copy of it that
/// nobody else sees. Absent when there is none, or it cannot be read.
std::optional<BaseDeFotos> leerBaseDeFotos(Afc &afc);

/// Removes the app's list, which it makes anew when the phone starts. True when nothing of it is left.
bool borrarBaseDeFotos(Afc &afc);

} // namespace vellora::motor
