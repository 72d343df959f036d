#pragma once

#include <QPointer>
#include <QQuickItem>
#include <qqmlregistration.h>

class QQmlComponent;

namespace vellora
{

/// Makes its content only while it is active, in its own size. It does what Qt Quick's Loader does, but takes
/// components that are bound to the file they stand in, which the Loader of Qt 6.4 refuses.
class Cargador : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_CLASSINFO("DefaultProperty", "contenido")
    Q_PROPERTY(bool activo READ activo WRITE ponActivo NOTIFY activoCambio)
    Q_PROPERTY(QQmlComponent *contenido READ contenido WRITE ponContenido NOTIFY contenidoCambio)
    /// Null while nothing is loaded.
    Q_PROPERTY(QQuickItem *item READ item NOTIFY itemCambio)

public:
    explicit Cargador(QQuickItem *padre = nullptr);

    bool activo() const { return activo_; }
    void ponActivo(bool valor);
    QQmlComponent *contenido() const { return contenido_; }
    void ponContenido(QQmlComponent *nuevo);
    QQuickItem *item() const { return item_; }

signals:
    void activoCambio();
    void contenidoCambio();
    void itemCambio();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &nueva, const QRectF &vieja) override;

private:
    void soltar();
    void cargar();
    void ajustar();

    QPointer<QQmlComponent> contenido_;
    QPointer<QQuickItem> item_;
    bool activo_ = true;
};

} // namespace vellora
