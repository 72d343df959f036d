#include "ventana/Manos.h"

#include <QAccessible>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace Manos
{

namespace
{

void recorrer(QAccessibleInterface *cosa, const std::function<void(QAccessibleInterface &)> &visita)
{
    if (cosa == nullptr)
        return;
    const auto *objeto = qobject_cast<QQuickItem *>(cosa->object());
    if (objeto != nullptr && !objeto->isVisible())
        return;
    visita(*cosa);
    for (int i = 0; i < cosa->childCount(); ++i)
        recorrer(cosa->child(i), visita);
}

QString nombreDe(QQuickItem *item)
{
    auto *cosa = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    if (cosa == nullptr)
        return {};
    const auto nombre = cosa->text(QAccessible::Name);
    return nombre.isEmpty() ? cosa->text(QAccessible::Description) : nombre; // Qt hides a password field's name
}

void recorrerVentana(QQuickWindow &ventana, const std::function<void(QAccessibleInterface &)> &visita)
{
    QAccessible::setActive(true);
    recorrer(QAccessible::queryAccessibleInterface(&ventana), visita);
}

} // namespace

QQuickItem *control(QQuickWindow &ventana, const QString &nombre)
{
    QQuickItem *hallado = nullptr;
    recorrerVentana(ventana, [&](QAccessibleInterface &cosa) {
        auto *item = qobject_cast<QQuickItem *>(cosa.object());
        if (!hallado && item && item->isEnabled() && cosa.text(QAccessible::Name) == nombre)
            hallado = item;
    });
    return hallado;
}

bool pulsar(QQuickWindow &ventana, const QString &nombre)
{
    auto *item = control(ventana, nombre);
    auto *cosa = item ? QAccessible::queryAccessibleInterface(item) : nullptr;
    auto *acciones = cosa ? cosa->actionInterface() : nullptr;
    if (acciones == nullptr || !acciones->actionNames().contains(QAccessibleActionInterface::pressAction()))
        return false;
    acciones->doAction(QAccessibleActionInterface::pressAction());
    return true;
}

QStringList nombres(QQuickWindow &ventana)
{
    QStringList lista;
    recorrerVentana(ventana, [&](QAccessibleInterface &cosa) { lista << cosa.text(QAccessible::Name); });
    return lista;
}

bool seLee(QQuickWindow &ventana, const QString &texto)
{
    return nombres(ventana).contains(texto);
}

QStringList sinNombre(QQuickWindow &ventana)
{
    QStringList mudos;
    recorrerVentana(ventana, [&](QAccessibleInterface &cosa) {
        auto *item = qobject_cast<QQuickItem *>(cosa.object());
        if (item && item->activeFocusOnTab() && nombreDe(item).isEmpty() && item->childItems().isEmpty())
            mudos << QString::fromLatin1(item->metaObject()->className());
        if (cosa.role() == QAccessible::Button && nombreDe(item).isEmpty())
            mudos << u"a button"_s;
    });
    return mudos;
}

void escribir(QQuickWindow &ventana, const QString &texto)
{
    for (const auto letra : texto)
        QTest::keyClick(&ventana, letra.toLatin1());
}

QStringList paradasDelTabulador(QQuickWindow &ventana)
{
    QStringList paradas;
    const auto *primera = ventana.activeFocusItem();
    for (int i = 0; i < 60; ++i) {
        QTest::keyClick(&ventana, Qt::Key_Tab);
        paradas << nombreDe(ventana.activeFocusItem());
        if (i > 0 && ventana.activeFocusItem() == primera)
            break;
        if (i == 0 && primera && !primera->activeFocusOnTab())
            primera = ventana.activeFocusItem();
    }
    return paradas;
}

QString nombreDelFoco(QQuickWindow &ventana)
{
    return nombreDe(ventana.activeFocusItem());
}

} // namespace Manos
