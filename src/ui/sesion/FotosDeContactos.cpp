#include "ui/sesion/FotosDeContactos.h"

#include "extraction/Contactos.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>

#include <algorithm>

namespace vellora
{

namespace
{

/// The middle of it as a disc: the window's software renderer cuts out no shapes.
QImage redonda(const QImage &entera)
{
    if (entera.isNull())
        return entera;
    const auto lado = std::min(entera.width(), entera.height());
    QImage disco(lado, lado, QImage::Format_ARGB32_Premultiplied);
    disco.fill(Qt::transparent);
    QPainter pintor(&disco);
    pintor.setRenderHint(QPainter::Antialiasing);
    pintor.setPen(Qt::NoPen);
    QBrush brocha(entera);
    brocha.setTransform(QTransform::fromTranslate(-(entera.width() - lado) / 2.0, -(entera.height() - lado) / 2.0));
    pintor.setBrush(brocha);
    pintor.drawEllipse(0, 0, lado, lado);
    return disco;
}

} // namespace

FotosDeContactos::FotosDeContactos(const Contactos &losContactos)
    : QQuickImageProvider(Image, ForceAsynchronousImageLoading), contactos(losContactos)
{
}

bool FotosDeContactos::esImagen(const QByteArray &bytes)
{
    auto suyos = bytes;
    QBuffer memoria(&suyos);
    QImageReader lector(&memoria);
    return lector.canRead() && !lector.size().isEmpty();
}

QImage FotosDeContactos::requestImage(const QString &id, QSize *tamano, const QSize &pedido)
{
    auto bytes = contactos.foto(id.section(QLatin1Char('/'), -1).toLongLong());
    QBuffer memoria(&bytes);
    QImageReader lector(&memoria);
    lector.setAutoTransform(true);
    const auto suyo = lector.size();
    // A disc is cut out of it, so it must cover what is asked for.
    if (suyo.isValid() && pedido.isValid() && !pedido.isEmpty())
        lector.setScaledSize(suyo.scaled(pedido, Qt::KeepAspectRatioByExpanding).boundedTo(suyo));
    auto imagen = redonda(lector.read());
    if (tamano != nullptr)
        *tamano = suyo;
    return imagen;
}

} // namespace vellora
