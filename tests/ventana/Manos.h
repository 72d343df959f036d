#pragma once

#include <QString>
#include <QStringList>

class QAccessibleInterface;
class QQuickItem;
class QQuickWindow;

/// The window as an assistive tool reaches it: by the names of what can be seen.
namespace Manos
{

/// What carries this accessible name, can be seen and is not off; null when there is none.
QQuickItem *control(QQuickWindow &ventana, const QString &nombre);
/// Presses a control by its accessible name; false when it is not there.
bool pulsar(QQuickWindow &ventana, const QString &nombre);
/// Accessible names of all that can be seen, in the order of the window.
QStringList nombres(QQuickWindow &ventana);
bool seLee(QQuickWindow &ventana, const QString &texto);
/// What can be seen and can take the keyboard but has no accessible name, by its class.
QStringList sinNombre(QQuickWindow &ventana);
/// Letter by letter, to what has the focus.
void escribir(QQuickWindow &ventana, const QString &texto);

/// Tabs from where the focus is until it comes round, at most 60 times; the accessible name of each stop.
QStringList paradasDelTabulador(QQuickWindow &ventana);
QString nombreDelFoco(QQuickWindow &ventana);

} // namespace Manos
