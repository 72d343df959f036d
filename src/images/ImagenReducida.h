#pragma once

#include <QImage>
#include <QString>

/// Small pictures of photos and videos, upright. Any thread.
namespace vellora
{

/// Reads a file so that it fits in a square of `lado` points; never larger than it is. JPEG, PNG and the like by Qt,
/// HEIC by libheif, a frame near the beginning of a video by FFmpeg. Null when it is none of those, or damaged.
QImage imagenReducida(const QString &fichero, int lado);

/// Writes it as a JPEG under its name once it is whole. False when that is not to be had.
bool guardarMiniatura(const QImage &imagen, const QString &fichero);

/// Side of the small pictures that are kept, and the file name of one: the same photo of the same phone has always the
/// same. `modificado` in seconds since 1970.
constexpr int ladoDeMiniatura = 320;
QString nombreDeMiniatura(const QString &udid, const QString &ruta, qint64 bytes, qint64 modificado);

} // namespace vellora
