#pragma once

#include <QQmlApplicationEngine>
#include <QStringList>

class QQuickWindow;

namespace vellora
{

class Apariencia;
class Copias;
class Modelo;

/// The objects that the window shows; they outlive it.
struct ObjetosDeVentana {
    Modelo &modelo;
    Copias &copias;
    Apariencia &apariencia;
    /// What must be installed before anything works; empty when all is there.
    QStringList falta;
};

/// The window's font and style; call once, before the first window. Main thread, like all here.
void prepararAspecto();

/// Loads the window on these objects and shows it; null when it cannot be loaded (the reasons are on standard error).
QQuickWindow *abrirVentanaPrincipal(QQmlApplicationEngine &motor, const ObjetosDeVentana &objetos);

} // namespace vellora
