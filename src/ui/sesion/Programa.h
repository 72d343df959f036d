#pragma once

#include "backups/Copias.h"
#include "backups/CopiasAutomaticas.h"
#include "backups/CopiasGuardadas.h"
#include "backups/Devolucion.h"
#include "extraction/Buscador.h"
#include "extraction/Contactos.h"
#include "extraction/Contrasenas.h"
#include "photos/Fotos.h"
#include "photos/SeleccionFotos.h"
#include "services/AvisosPorTelegram.h"
#include "session/BateriaYRed.h"
#include "session/Cerradura.h"
#include "session/Consentimiento.h"
#include "session/Modelo.h"
#include "ui/sesion/AjustesDeVentana.h"
#include "ui/sesion/VisorDeDatos.h"

#include <QObject>
#include <QVariantList>
#include <qqmlregistration.h>

namespace vellora
{

/// Everything that the window shows and does, made once for the whole program: the session, the areas' objects and the
/// few requests that need several of them. Main thread only.
class Programa : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes it")
    Q_PROPERTY(vellora::Modelo *modelo READ modeloPuntero CONSTANT)
    Q_PROPERTY(vellora::Copias *copias READ copiasPuntero CONSTANT)
    Q_PROPERTY(vellora::CopiasAutomaticas *automaticas READ automaticasPuntero CONSTANT)
    Q_PROPERTY(vellora::CopiasGuardadas *guardadas READ guardadasPuntero CONSTANT)
    Q_PROPERTY(vellora::Devolucion *devolucion READ devolucionPuntero CONSTANT)
    Q_PROPERTY(vellora::BateriaYRed *bateria READ bateriaPuntero CONSTANT)
    Q_PROPERTY(vellora::Cerradura *cerradura READ cerraduraPuntero CONSTANT)
    Q_PROPERTY(vellora::Consentimiento *consentimiento READ consentimientoPuntero CONSTANT)
    Q_PROPERTY(vellora::AvisosPorTelegram *telegram READ telegramPuntero CONSTANT)
    Q_PROPERTY(vellora::Buscador *buscador READ buscadorPuntero CONSTANT)
    Q_PROPERTY(vellora::Contactos *contactos READ contactosPuntero CONSTANT)
    Q_PROPERTY(vellora::Contrasenas *contrasenas READ contrasenasPuntero CONSTANT)
    Q_PROPERTY(vellora::VisorDeDatos *visor READ visorPuntero CONSTANT)
    Q_PROPERTY(vellora::Fotos *fotos READ fotosPuntero CONSTANT)
    Q_PROPERTY(vellora::SeleccionFotos *seleccion READ seleccionPuntero CONSTANT)
    Q_PROPERTY(vellora::AjustesDeVentana *ajustes READ ajustesPuntero CONSTANT)
    Q_PROPERTY(QVariantList piezas READ piezas CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)

public:
    explicit Programa(const Copias::Consulta &consulta);

    Modelo modelo;
    Cerradura cerradura;
    Consentimiento consentimiento;
    Copias copias;
    CopiasAutomaticas automaticas;
    CopiasGuardadas guardadas;
    Devolucion devolucion;
    BateriaYRed bateria;
    AvisosPorTelegram telegram;
    Buscador buscador;
    Contactos contactos;
    Contrasenas contrasenas;
    VisorDeDatos visor;
    Fotos fotos;
    SeleccionFotos seleccion;
    AjustesDeVentana ajustes;

    /// Turns the backup of the selected phone, or the first there is, into plain files.
    Q_INVOKABLE void sacarMisDatos();
    /// What has been taken out; where that is nothing, it is taken out first.
    Q_INVOKABLE void verMisDatos();
    /// Reads the saved passwords, once the system has made sure of the owner.
    Q_INVOKABLE void buscarContrasenas();
    Q_INVOKABLE void abrirMiCarpeta();

    /// Asks before the whole library goes. Without a backup it does not: a notice says what to do first.
    Q_INVOKABLE void pedirBorrarTodas();
    /// Takes the photos out of the backup.
    Q_INVOKABLE void recuperarFotos();

    /// What the program stands on, for those who ask: name, version, licence and what it is for.
    static QVariantList piezas();
    static QString version();

private:
    void quizaOtroTelefono();

    QString carpetaEnVista;

    Modelo *modeloPuntero() { return &modelo; }
    Copias *copiasPuntero() { return &copias; }
    CopiasAutomaticas *automaticasPuntero() { return &automaticas; }
    CopiasGuardadas *guardadasPuntero() { return &guardadas; }
    Devolucion *devolucionPuntero() { return &devolucion; }
    BateriaYRed *bateriaPuntero() { return &bateria; }
    Cerradura *cerraduraPuntero() { return &cerradura; }
    Consentimiento *consentimientoPuntero() { return &consentimiento; }
    AvisosPorTelegram *telegramPuntero() { return &telegram; }
    Buscador *buscadorPuntero() { return &buscador; }
    Contactos *contactosPuntero() { return &contactos; }
    Contrasenas *contrasenasPuntero() { return &contrasenas; }
    VisorDeDatos *visorPuntero() { return &visor; }
    Fotos *fotosPuntero() { return &fotos; }
    SeleccionFotos *seleccionPuntero() { return &seleccion; }
    AjustesDeVentana *ajustesPuntero() { return &ajustes; }
};

} // namespace vellora
