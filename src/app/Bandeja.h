#pragma once

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

class QQuickWindow;

namespace vellora
{

class Programa;

/// The program's icon in the desktop's bar, with the phone and what is done most; there while the owner wants it and
/// the desktop has a bar. Main thread only.
class Bandeja : public QObject
{
    Q_OBJECT

public:
    Bandeja(Programa &elPrograma, QQuickWindow &laVentana, QObject *padre = nullptr);

private:
    void ponMenu();

    Programa &programa;
    QQuickWindow &ventana;
    QMenu menu;
    QSystemTrayIcon icono;
};

} // namespace vellora
