#pragma once

#include <QByteArray>

/// A property list is measured before the library unfolds it: libplist makes a node of each reference, so that a few
/// hundred bytes become gigabytes, and goes down by recursion, so that a deep one ends the program.
namespace vellora
{

/// What the largest honest list stays far below: Manifest.plist with some hundred apps, a keychain of thousands.
constexpr quint32 maximoDeNodosDePlist = 400'000;
constexpr int maximoDeFondoDePlist = 64;
/// Bytes of texts and data, each counted as often as it is unfolded.
constexpr quint64 maximoDeBytesDePlist = 64ULL * 1024 * 1024;

enum class FormaDePlist { Xml, Binaria, Ninguna };

/// The form whose reader may be given these bytes. `Ninguna` for what is neither, nests or unfolds beyond the limits,
/// refers to itself, declares entities, or is XML of a kind that no phone and no tool writes. Any thread; time and
/// memory grow with the bytes only.
FormaDePlist medirPlist(const QByteArray &bytes);

} // namespace vellora
