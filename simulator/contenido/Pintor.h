#pragma once

#include <QByteArray>
#include <QImage>

namespace simulado
{

/// A drawn picture that behaves like a photograph for whoever shows or compares it: sky, hills, trees, grain.
/// `motivo` chooses everything: the same number gives the same picture in any size.
QImage pinta(int motivo, int ancho, int alto);
/// A drawn screen of a phone: bars, cards, bubbles. No letters, since drawing text needs a window system.
QImage pintaCaptura(int motivo, int ancho, int alto);
/// A round portrait as the address book keeps them.
QImage pintaRetrato(int motivo, int lado);

/// An app's icon, 120 pixels a side with round corners; each number gives its own colours and shape.
QImage pintaIcono(int numero);

QByteArray comoJpeg(const QImage &imagen, int calidad);
QByteArray comoPng(const QImage &imagen);

/// A tone as uncompressed sound in a Core Audio file.
QByteArray sonidoCaf(double segundos, int hercios);

} // namespace simulado
