#include "ui/componentes/Cargador.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlInfo>

namespace vellora
{

Cargador::Cargador(QQuickItem *padre) : QQuickItem(padre)
{
    setFlag(ItemIsFocusScope);
}

void Cargador::ponActivo(bool valor)
{
    if (valor == activo_)
        return;
    activo_ = valor;
    emit activoCambio();
    cargar();
}

void Cargador::ponContenido(QQmlComponent *nuevo)
{
    if (nuevo == contenido_)
        return;
    contenido_ = nuevo;
    emit contenidoCambio();
    soltar();
    cargar();
}

void Cargador::ponFuente(const QUrl &nueva)
{
    if (nueva == fuente_)
        return;
    fuente_ = nueva;
    emit fuenteCambio();
    soltar();
    cargar();
}

void Cargador::componentComplete()
{
    QQuickItem::componentComplete();
    cargar();
}

void Cargador::geometryChange(const QRectF &nueva, const QRectF &vieja)
{
    QQuickItem::geometryChange(nueva, vieja);
    if (item_ && nueva.size() != vieja.size())
        item_->setSize(nueva.size());
}

void Cargador::soltar()
{
    if (!item_)
        return;
    // The item may be in the middle of the signal that closes it.
    auto *viejo = item_.data();
    item_.clear();
    viejo->setVisible(false);
    viejo->setParentItem(nullptr);
    viejo->deleteLater();
    setImplicitSize(0, 0);
    emit itemCambio();
}

void Cargador::cargar()
{
    if (!activo_) {
        soltar();
        return;
    }
    if (item_ || !isComponentComplete())
        return;
    if (contenido_) {
        auto *contexto = contenido_->creationContext();
        hacer(*contenido_, contexto ? contexto : qmlContext(this));
    } else if (!fuente_.isEmpty()) {
        QQmlComponent componente(qmlEngine(this), fuente_);
        hacer(componente, qmlContext(this));
    }
}

void Cargador::hacer(QQmlComponent &componente, QQmlContext *contexto)
{
    auto *objeto = componente.beginCreate(contexto);
    auto *nuevo = qobject_cast<QQuickItem *>(objeto);
    if (!nuevo) {
        qmlWarning(this, componente.errors());
        delete objeto;
        return;
    }
    componente.setInitialProperties(nuevo, propiedades_);
    QQmlEngine::setObjectOwnership(nuevo, QQmlEngine::CppOwnership);
    nuevo->setParent(this);
    nuevo->setParentItem(this);
    item_ = nuevo;
    nuevo->setSize(size());
    componente.completeCreate();
    connect(nuevo, &QQuickItem::implicitWidthChanged, this, &Cargador::ajustar);
    connect(nuevo, &QQuickItem::implicitHeightChanged, this, &Cargador::ajustar);
    ajustar();
    emit itemCambio();
}

void Cargador::ajustar()
{
    if (!item_)
        return;
    setImplicitSize(item_->implicitWidth(), item_->implicitHeight());
    item_->setSize(size());
}

} // namespace vellora
