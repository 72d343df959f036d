#include "contenido/Azar.h"
#include "contenido/Pintor.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace simulado
{

static QPainterPath estrella(int puntas, double hondo)
{
    QPainterPath camino;
    for (int i = 0; i < puntas * 2; ++i) {
        const double angulo = 3.14159265 * i / puntas - 1.5708, radio = i % 2 == 0 ? 38 : 38 * hondo;
        const QPointF punto(60 + radio * std::cos(angulo), 60 + radio * std::sin(angulo));
        if (i == 0)
            camino.moveTo(punto);
        else
            camino.lineTo(punto);
    }
    camino.closeSubpath();
    return camino;
}

static QPainterPath figura(int numero)
{
    QPainterPath f;
    f.setFillRule(numero % 7 == 3 ? Qt::OddEvenFill : Qt::WindingFill);
    switch (numero % 7) {
    case 0: // speech bubble
        f.addRoundedRect(24, 28, 72, 52, 24, 24);
        f.moveTo(36, 74);
        f.lineTo(30, 98);
        f.lineTo(58, 78);
        f.closeSubpath();
        break;
    case 1: // columns
        for (int i = 0; i < 4; ++i)
            f.addRoundedRect(26 + i * 19, 78 - 14 * ((i * 5 + numero) % 4), 12, 18 + 14 * ((i * 5 + numero) % 4), 4, 4);
        break;
    case 2: // star
        f = estrella(4 + numero % 5, 0.5);
        break;
    case 3: // ring
        f.addEllipse(QPointF(60, 60), 36, 36);
        f.addEllipse(QPointF(60, 60), 18, 18);
        break;
    case 4: // note
        f.addEllipse(30, 72, 24, 20);
        f.addEllipse(68, 64, 24, 20);
        f.addRect(47, 30, 7, 52);
        f.addRect(85, 22, 7, 52);
        f.addRect(47, 24, 45, 12);
        break;
    case 5: // pin
        f.addEllipse(QPointF(60, 50), 25, 25);
        f.moveTo(40, 64);
        f.lineTo(60, 100);
        f.lineTo(80, 64);
        f.closeSubpath();
        break;
    default: // cards
        f.addRoundedRect(26, 34, 68, 16, 8, 8);
        f.addRoundedRect(26, 56, 48, 16, 8, 8);
        f.addRoundedRect(26, 78, 60, 16, 8, 8);
    }
    return f;
}

QImage pintaIcono(int numero)
{
    QImage imagen(120, 120, QImage::Format_ARGB32);
    imagen.fill(Qt::transparent);
    QPainter p(&imagen);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    const double tono = std::fmod(numero * 0.381966 + 0.33, 1.0);
    QLinearGradient fondo(0, 0, 0, 120);
    fondo.setColorAt(0, QColor::fromHslF(static_cast<float>(tono), 0.75F, 0.62F));
    fondo.setColorAt(1, QColor::fromHslF(static_cast<float>(std::fmod(tono + 0.06, 1.0)), 0.85F, 0.42F));
    p.setBrush(fondo);
    p.drawRoundedRect(QRectF(0, 0, 120, 120), 27, 27);
    p.setBrush(QColor(255, 255, 255, 240));
    p.drawPath(figura(numero));
    return imagen;
}

} // namespace simulado
