#include "ui/componentes/Icono.h"

#include <QFile>
#include <QLoggingCategory>
#include <QPainter>
#include <QSvgRenderer>

// In a static library nothing else would bring the drawings in. It must stand outside any namespace.
static void traerDibujos()
{
    Q_INIT_RESOURCE(simbolos);
}

namespace vellora
{

namespace
{

constexpr qreal ladoPorDefecto = 16;

} // namespace

Icono::Icono(QQuickItem *padre) : QQuickPaintedItem(padre)
{
    setAntialiasing(true);
    setSize({ladoPorDefecto, ladoPorDefecto});
    setImplicitSize(ladoPorDefecto, ladoPorDefecto);
}

QString Icono::ficheroDe(const QString &simbolo)
{
    static const bool traidos = (traerDibujos(), true);
    Q_UNUSED(traidos)
    return QStringLiteral(":/vellora/simbolos/%1.svg").arg(simbolo);
}

void Icono::ponSimbolo(const QString &nuevo)
{
    if (nuevo == simbolo_)
        return;
    simbolo_ = nuevo;
    if (!nuevo.isEmpty() && !QFile::exists(ficheroDe(nuevo)))
        qWarning("No drawing for the symbol %s", qUtf8Printable(nuevo));
    emit simboloCambio();
    update();
}

void Icono::ponColor(const QColor &nuevo)
{
    if (nuevo == color_)
        return;
    color_ = nuevo;
    emit colorCambio();
    update();
}

void Icono::ponLado(qreal nuevo)
{
    if (qFuzzyCompare(nuevo, width()))
        return;
    setSize({nuevo, nuevo});
    setImplicitSize(nuevo, nuevo);
    emit ladoCambio();
}

void Icono::paint(QPainter *pintor)
{
    QFile fichero(ficheroDe(simbolo_));
    if (simbolo_.isEmpty() || !fichero.open(QIODevice::ReadOnly))
        return;
    // The drawings paint everything in "currentColor", which the renderer would take for black.
    QSvgRenderer dibujo(fichero.readAll().replace("currentColor", color_.name().toLatin1()));
    pintor->setOpacity(color_.alphaF());
    dibujo.render(pintor, QRectF(0, 0, width(), height()));
}

} // namespace vellora
