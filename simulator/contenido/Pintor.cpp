#include "contenido/Pintor.h"

#include "contenido/Azar.h"

#include <QBuffer>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QtEndian>

#include <cmath>

namespace simulado
{

namespace
{

QColor tono(Azar &a, double desde, double hasta, double viveza, double luz)
{
    return QColor::fromHslF(static_cast<float>(std::fmod(a.real(desde, hasta) + 1.0, 1.0)), static_cast<float>(viveza),
                            static_cast<float>(luz));
}

QPainterPath monte(Azar &a, double ancho, double alto, double base, double amplitud)
{
    QPainterPath camino(QPointF(0, alto));
    const double fase = a.real(0, 6.28), paso = a.real(1.5, 4.0);
    for (int i = 0; i <= 64; ++i) {
        const double x = i / 64.0;
        const double y = base - amplitud * (std::sin(fase + paso * 2 * x) + 0.4 * std::sin(3.1 * fase + paso * 7 * x));
        camino.lineTo(x * ancho, y * alto);
    }
    camino.lineTo(ancho, alto);
    camino.closeSubpath();
    return camino;
}

/// Sensor noise: without it the compressors make files far smaller than a camera's.
void grano(QImage &imagen, Azar &a)
{
    quint64 bits = a.siguiente();
    for (int y = 0; y < imagen.height(); ++y) {
        auto *fila = reinterpret_cast<QRgb *>(imagen.scanLine(y));
        for (int x = 0; x < imagen.width(); ++x) {
            bits = bits * 6364136223846793005ULL + 1442695040888963407ULL;
            const int r = static_cast<int>(bits >> 61) - 4;
            fila[x] = qRgb(qBound(0, qRed(fila[x]) + r, 255), qBound(0, qGreen(fila[x]) + r, 255),
                           qBound(0, qBlue(fila[x]) + r, 255));
        }
    }
}

} // namespace

QImage pinta(int motivo, int ancho, int alto)
{
    Azar a(static_cast<quint32>(motivo), "paisaje");
    QImage imagen(ancho, alto, QImage::Format_RGB32);
    QPainter p(&imagen);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient cielo(0, 0, 0, alto);
    cielo.setColorAt(0, tono(a, 0.55, 0.68, 0.6, a.real(0.25, 0.7)));
    cielo.setColorAt(0.6, tono(a, -0.05, 0.15, 0.7, 0.75));
    p.fillRect(imagen.rect(), cielo);
    const QPointF sol(a.real(0.1, 0.9) * ancho, a.real(0.1, 0.45) * alto);
    QRadialGradient brillo(sol, alto * 0.4);
    brillo.setColorAt(0, QColor(255, 250, 220, 255));
    brillo.setColorAt(0.12, QColor(255, 240, 190, 220));
    brillo.setColorAt(1, QColor(255, 240, 190, 0));
    p.fillRect(imagen.rect(), brillo);
    p.setPen(Qt::NoPen);
    const double verde = a.real(0.05, 0.5);
    for (int capa = 0; capa < 4; ++capa) {
        p.setBrush(tono(a, verde, verde + 0.1, 0.25 + 0.08 * capa, 0.55 - 0.11 * capa));
        p.drawPath(monte(a, ancho, alto, 0.5 + 0.12 * capa, 0.06));
    }
    for (qint64 i = a.entero(5, 40); i > 0; --i) {
        const double x = a.real(0, 1) * ancho, y = a.real(0.75, 1) * alto, t = a.real(0.02, 0.07) * alto;
        p.setBrush(tono(a, verde, verde + 0.12, 0.5, a.real(0.12, 0.4)));
        p.drawEllipse(QPointF(x, y - t * 1.5), t, t * 1.3);
        p.drawRect(QRectF(x - t * 0.12, y - t, t * 0.24, t * 1.4));
    }
    p.end();
    grano(imagen, a);
    return imagen;
}

QImage pintaCaptura(int motivo, int ancho, int alto)
{
    Azar a(static_cast<quint32>(motivo), "captura");
    QImage imagen(ancho, alto, QImage::Format_RGB32);
    const bool oscuro = a.si(40);
    imagen.fill(oscuro ? QColor(20, 20, 24) : QColor(246, 246, 250));
    QPainter p(&imagen);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(tono(a, 0, 1, 0.6, 0.5));
    p.drawRect(0, 0, ancho, alto / 9);
    for (int fila = 0; fila < 9; ++fila) {
        const bool mio = a.si(50);
        const double largo = a.real(0.3, 0.7) * ancho;
        const QRectF burbuja(mio ? ancho * 0.95 - largo : ancho * 0.05, alto * (0.14 + 0.09 * fila), largo,
                             alto * 0.065);
        p.setBrush(mio ? QColor(40, 130, 250) : oscuro ? QColor(50, 50, 56) : QColor(226, 226, 232));
        p.drawRoundedRect(burbuja, 30, 30);
        p.setBrush(mio ? QColor(255, 255, 255, 200) : QColor(128, 128, 128, 200));
        for (int linea = 0; linea < 2; ++linea)
            p.drawRoundedRect(QRectF(burbuja.x() + 24, burbuja.y() + burbuja.height() * (0.25 + 0.35 * linea),
                                     (largo - 48) * a.real(0.4, 1), burbuja.height() * 0.16),
                              4, 4);
    }
    return imagen;
}

QImage pintaRetrato(int motivo, int lado)
{
    Azar a(static_cast<quint32>(motivo), "retrato");
    QImage imagen(lado, lado, QImage::Format_RGB32);
    imagen.fill(tono(a, 0, 1, 0.5, 0.75));
    QPainter p(&imagen);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.scale(lado / 100.0, lado / 100.0);
    p.setBrush(tono(a, 0, 1, 0.55, 0.4));
    p.drawEllipse(QPointF(50, 108), 42, 40);
    const auto pelo = tono(a, 0.02, 0.12, 0.5, a.real(0.1, 0.6));
    p.setBrush(pelo);
    p.drawEllipse(QPointF(50, 42), 27, 30);
    p.setBrush(tono(a, 0.05, 0.09, 0.5, a.real(0.35, 0.82)));
    p.drawEllipse(QPointF(50, 50), 21, 26);
    p.setBrush(QColor(40, 30, 30));
    p.drawEllipse(QPointF(42, 48), 2.4, 3);
    p.drawEllipse(QPointF(58, 48), 2.4, 3);
    p.setBrush(QColor(170, 70, 70));
    p.drawChord(QRectF(41, 54, 18, 12), 180 * 16, 180 * 16);
    p.setBrush(pelo);
    p.drawChord(QRectF(28, 16, 44, 34), 0, 180 * 16);
    return imagen;
}

QByteArray comoJpeg(const QImage &imagen, int calidad)
{
    QByteArray datos;
    QBuffer destino(&datos);
    imagen.save(&destino, "JPG", calidad);
    return datos;
}

QByteArray comoPng(const QImage &imagen)
{
    QByteArray datos;
    QBuffer destino(&datos);
    imagen.save(&destino, "PNG");
    return datos;
}

static QByteArray grande(quint64 valor, int octetos)
{
    QByteArray salida(8, Qt::Uninitialized);
    qToBigEndian(valor, salida.data());
    return salida.right(octetos);
}

QByteArray sonidoCaf(double segundos, int hercios)
{
    constexpr double ritmo = 8000;
    QByteArray muestras;
    for (int i = 0; i < static_cast<int>(segundos * ritmo); ++i) {
        const auto v = static_cast<qint16>(9000 * std::sin(6.283185307 * hercios * i / ritmo) * std::exp(-i / 12000.0));
        muestras += grande(static_cast<quint16>(v), 2);
    }
    quint64 bitsDelRitmo = 0;
    std::memcpy(&bitsDelRitmo, &ritmo, sizeof ritmo);
    const auto descripcion =
        grande(bitsDelRitmo, 8) + "lpcm" + grande(0, 4) + grande(2, 4) + grande(1, 4) + grande(1, 4) + grande(16, 4);
    return "caff" + grande(1, 2) + grande(0, 2) + "desc" + grande(32, 8) + descripcion + "data" +
           grande(static_cast<quint64>(muestras.size()) + 4, 8) + grande(0, 4) + muestras;
}

} // namespace simulado
