#pragma once

#include "engine/device/Afc.h"

#include <QByteArray>

#include <optional>
#include <unordered_map>

namespace vellora::motor
{

enum class EstadoDeFoto { Visible, Oculta, Papelera };

/// What the Photos app of the phone knows of the files of the roll, by their place in it ("100APPLE/IMG_0001.HEIC").
using BaseDeFotos = std::unordered_map<std::string, EstadoDeFoto>;

/// Reads the app's list (`/PhotoData/Photos.sqlite`, table ZASSET, ZGENERICASSET before iOS 14) in a copy of it that
/// nobody else sees. Absent when there is none, or it cannot be read.
std::optional<BaseDeFotos> leerBaseDeFotos(Afc &afc);

/// Removes the app's list, which it makes anew when the phone starts. True when nothing of it is left.
bool borrarBaseDeFotos(Afc &afc);

} // namespace vellora::motor
