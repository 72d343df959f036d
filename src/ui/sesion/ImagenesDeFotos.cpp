#include "ui/sesion/ImagenesDeFotos.h"

#include "images/ImagenReducida.h"

#include <QPainter>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr int ladoDeSobra = 2560;
// Of a cell that is drawn at its own size.
constexpr double redondeo = 0.06;

/// The window's software renderer cuts out no shapes.
QImage enCelda(const QImage &entera, int lado)
{
    if (entera.isNull())
        return entera;
    const auto justa = entera.scaled(lado, lado, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    QImage celda(lado, lado, QImage::Format_ARGB32_Premultiplied);
    celda.fill(Qt::transparent);
    QPainter pintor(&celda);
    pintor.setRenderHint(QPainter::Antialiasing);
    pintor.setPen(Qt::NoPen);
    QBrush brocha(justa);
    brocha.setTransform(QTransform::fromTranslate(-(justa.width() - lado) / 2.0, -(justa.height() - lado) / 2.0));
    pintor.setBrush(brocha);
    pintor.drawRoundedRect(celda.rect(), lado * redondeo, lado * redondeo);
    return celda;
}

} // namespace

QImage ImagenesDeFotos::requestImage(const QString &id, QSize *tamano, const QSize &pedido)
{
    const auto fichero = QUrl::fromPercentEncoding(id.section(u'/', 1).toUtf8());
    const auto lado = pedido.isValid() && !pedido.isEmpty() ? std::max(pedido.width(), pedido.height()) : ladoDeSobra;
    auto imagen =
        id.startsWith("celda/"_L1) ? enCelda(imagenReducida(fichero, 2 * lado), lado) : imagenReducida(fichero, lado);
    if (tamano != nullptr)
        *tamano = imagen.size();
    return imagen;
}

} // namespace vellora
