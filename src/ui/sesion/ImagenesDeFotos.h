#pragma once

#include <QQuickImageProvider>

namespace vellora
{

/// Pictures of files of this computer, by their paths percent-encoded: "image://fotos/celda/PATH" the middle of one as
/// a square with round corners, "image://fotos/entera/PATH" the whole, no larger than is asked for.
class ImagenesDeFotos : public QQuickImageProvider
{
public:
    ImagenesDeFotos() : QQuickImageProvider(Image, ForceAsynchronousImageLoading) {}
    QImage requestImage(const QString &id, QSize *tamano, const QSize &pedido) override;
};

} // namespace vellora
