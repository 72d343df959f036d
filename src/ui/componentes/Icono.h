#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>
#include <qqmlregistration.h>

namespace vellora
{

/// A symbol of the design drawn in one colour, sharp at any scale. The drawings stand in the program under
/// ":/vellora/simbolos/SYMBOL.svg"; an unknown symbol draws nothing and is told in a warning.
class Icono : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString simbolo READ simbolo WRITE ponSimbolo NOTIFY simboloCambio)
    Q_PROPERTY(QColor color READ color WRITE ponColor NOTIFY colorCambio)
    /// Width and height, in pixels of the design.
    Q_PROPERTY(qreal lado READ lado WRITE ponLado NOTIFY ladoCambio)

public:
    explicit Icono(QQuickItem *padre = nullptr);

    QString simbolo() const { return simbolo_; }
    void ponSimbolo(const QString &nuevo);
    QColor color() const { return color_; }
    void ponColor(const QColor &nuevo);
    qreal lado() const { return width(); }
    void ponLado(qreal nuevo);

    void paint(QPainter *pintor) override;

    static QString ficheroDe(const QString &simbolo);

signals:
    void simboloCambio();
    void colorCambio();
    void ladoCambio();

private:
    QString simbolo_;
    QColor color_ = Qt::black;
};

} // namespace vellora
