#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QUrl>
#include <QVariantMap>
#include <qqmlregistration.h>

class QQmlComponent;
class QQmlContext;

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
    /// In place of `contenido`: a file to read when it is needed, and the properties it is made with. They are not
    /// followed afterwards.
    Q_PROPERTY(QUrl fuente READ fuente WRITE ponFuente NOTIFY fuenteCambio)
    Q_PROPERTY(QVariantMap propiedades MEMBER propiedades_ NOTIFY propiedadesCambio)
    /// Null while nothing is loaded.
    Q_PROPERTY(QQuickItem *item READ item NOTIFY itemCambio)

public:
    explicit Cargador(QQuickItem *padre = nullptr);

    bool activo() const { return activo_; }
    void ponActivo(bool valor);
    QQmlComponent *contenido() const { return contenido_; }
    void ponContenido(QQmlComponent *nuevo);
    QUrl fuente() const { return fuente_; }
    void ponFuente(const QUrl &nueva);
    QQuickItem *item() const { return item_; }

signals:
    void activoCambio();
    void contenidoCambio();
    void fuenteCambio();
    void propiedadesCambio();
    void itemCambio();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &nueva, const QRectF &vieja) override;

private:
    void soltar();
    void cargar();
    void hacer(QQmlComponent &componente, QQmlContext *contexto);
    void ajustar();

    QPointer<QQmlComponent> contenido_;
    QUrl fuente_;
    QVariantMap propiedades_;
    QPointer<QQuickItem> item_;
    bool activo_ = true;
};

} // namespace vellora
