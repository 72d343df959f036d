#pragma once

#include <QQmlApplicationEngine>
#include <QStringList>

class QQuickWindow;

namespace vellora
{

class Apariencia;
class Programa;

/// The objects that the window shows; they outlive it.
struct ObjetosDeVentana {
    Programa &programa;
    Apariencia &apariencia;
    /// What must be installed before anything works; empty when all is there.
    QStringList falta;
};

/// The window's font and style; call once, before the first window. Main thread only, like all here.
void prepararAspecto();

/// Loads the window on these objects and shows it, where it stood last time; null when it cannot be loaded (the reasons
/// are on standard error).
QQuickWindow *abrirVentanaPrincipal(QQmlApplicationEngine &motor, const ObjetosDeVentana &objetos);

/// Brings the window to the front, out of the bar too.
void traerAlFrente(QQuickWindow &ventana);

} // namespace vellora
