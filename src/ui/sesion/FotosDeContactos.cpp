#include "ui/sesion/FotosDeContactos.h"

#include "extraction/Contactos.h"

#include <QBuffer>
#include <QImageReader>

namespace vellora
{

FotosDeContactos::FotosDeContactos(const Contactos &losContactos)
    : QQuickImageProvider(Image, ForceAsynchronousImageLoading), contactos(losContactos)
{
}

QImage FotosDeContactos::requestImage(const QString &id, QSize *tamano, const QSize &pedido)
{
    auto bytes = contactos.foto(id.section(QLatin1Char('/'), -1).toLongLong());
    QBuffer memoria(&bytes);
    QImageReader lector(&memoria);
    lector.setAutoTransform(true);
    const auto suyo = lector.size();
    // A square is cut out of it later, so it must cover what is asked for.
    if (suyo.isValid() && pedido.isValid() && !pedido.isEmpty())
        lector.setScaledSize(suyo.scaled(pedido, Qt::KeepAspectRatioByExpanding).boundedTo(suyo));
    const auto imagen = lector.read();
    if (tamano != nullptr)
        *tamano = suyo;
    return imagen;
}

} // namespace vellora
