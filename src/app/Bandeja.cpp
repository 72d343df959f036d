#include "app/Bandeja.h"

#include "ui/Interfaz.h"
#include "ui/sesion/Programa.h"
#include "ui/sesion/Rotulos.h"

#include <QApplication>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

namespace vellora
{

Bandeja::Bandeja(Programa &elPrograma, QQuickWindow &laVentana, QObject *padre)
    : QObject(padre), programa(elPrograma), ventana(laVentana)
{
    icono.setIcon(QIcon(u":/vellora/simbolos/iphone.gen3.svg"_s));
    icono.setToolTip(u"Vellora"_s);
    icono.setContextMenu(&menu);
    connect(&menu, &QMenu::aboutToShow, this, &Bandeja::ponMenu);
    connect(&icono, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason como) {
        if (como == QSystemTrayIcon::Trigger)
            traerAlFrente(ventana);
    });
    const auto mostrar = [this] {
        icono.setVisible(programa.ajustes.iconoEnLaBarra() && programa.ajustes.hayBarra());
    };
    programa.ajustes.ponHayBarra(QSystemTrayIcon::isSystemTrayAvailable());
    connect(&programa.ajustes, &AjustesDeVentana::cambio, this, mostrar);
    connect(&programa.modelo, &Modelo::cambioDeSesion, this, &Bandeja::ponMenu);
    ponMenu();
    mostrar();
}

void Bandeja::ponMenu()
{
    menu.clear();
    const auto &elegido = programa.modelo.seleccionado();
    if (elegido) {
        const auto libres = Rotulos::libres(*elegido);
        menu.addAction(libres.isEmpty() ? elegido->nombre : elegido->nombre + u" · "_s + libres)->setEnabled(false);
        menu.addSeparator();
        auto *fotos = menu.addAction(u"Copiar fotos y vídeos"_s);
        fotos->setEnabled(!programa.modelo.tarea().enMarcha());
        connect(fotos, &QAction::triggered, &programa.fotos, &Fotos::copiar);
        auto *copia = menu.addAction(u"Hacer copia de seguridad"_s);
        copia->setEnabled(!programa.modelo.tarea().enMarcha());
        connect(copia, &QAction::triggered, this, [this] {
            traerAlFrente(ventana); // a password may have to be asked for
            programa.copias.pedirCopia();
        });
    } else {
        menu.addAction(u"No hay ningún iPhone conectado"_s)->setEnabled(false);
    }
    menu.addSeparator();
    connect(menu.addAction(u"Abrir mi carpeta"_s), &QAction::triggered, &programa, &Programa::abrirMiCarpeta);
    connect(menu.addAction(u"Abrir Vellora"_s), &QAction::triggered, this, [this] { traerAlFrente(ventana); });
    connect(menu.addAction(u"Salir"_s), &QAction::triggered, this, [this] {
        if (!programa.modelo.tarea().enMarcha()) {
            ventana.setProperty("saliendo", true); // or it would stay in the bar
            return QApplication::quit();
        }
        traerAlFrente(ventana);
        QMetaObject::invokeMethod(&ventana, "preguntaAlSalir");
    });
}

} // namespace vellora
