#pragma once

#include "backups/Copias.h"
#include "backups/CopiasAutomaticas.h"
#include "extraction/Buscador.h"
#include "extraction/Contactos.h"
#include "extraction/Contrasenas.h"
#include "photos/Fotos.h"
#include "photos/SeleccionFotos.h"
#include "services/AvisosPorTelegram.h"
#include "services/Cerradura.h"
#include "session/BateriaYRed.h"
#include "session/Modelo.h"
#include "ui/sesion/AjustesDeVentana.h"
#include "ui/sesion/VisorDeDatos.h"

#include <QObject>
#include <QVariantList>
#include <qqmlregistration.h>

#include <functional>

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
    Q_PROPERTY(vellora::BateriaYRed *bateria READ bateriaPuntero CONSTANT)
    Q_PROPERTY(vellora::Cerradura *cerradura READ cerraduraPuntero CONSTANT)
    Q_PROPERTY(vellora::AvisosPorTelegram *telegram READ telegramPuntero CONSTANT)
    Q_PROPERTY(vellora::Buscador *buscador READ buscadorPuntero CONSTANT)
    Q_PROPERTY(vellora::Contactos *contactos READ contactosPuntero CONSTANT)
    Q_PROPERTY(vellora::Contrasenas *contrasenas READ contrasenasPuntero CONSTANT)
    Q_PROPERTY(vellora::VisorDeDatos *visor READ visorPuntero CONSTANT)
    Q_PROPERTY(vellora::Fotos *fotos READ fotosPuntero CONSTANT)
    Q_PROPERTY(vellora::SeleccionFotos *seleccion READ seleccionPuntero CONSTANT)
    Q_PROPERTY(QString preguntaDeBorrarTodas READ preguntaDeBorrarTodas NOTIFY preguntaDeBorrarTodasCambio)
    Q_PROPERTY(vellora::AjustesDeVentana *ajustes READ ajustesPuntero CONSTANT)
    Q_PROPERTY(bool pidiendoDevolver READ pidiendoDevolver NOTIFY pidiendoDevolverCambio)
    Q_PROPERTY(QVariantList piezas READ piezas CONSTANT)
    Q_PROPERTY(QString version READ version CONSTANT)

public:
    explicit Programa(const Copias::HayClave &hayClave);

    Modelo modelo;
    Copias copias;
    CopiasAutomaticas automaticas;
    BateriaYRed bateria;
    Cerradura cerradura;
    AvisosPorTelegram telegram;
    Buscador buscador;
    Contactos contactos;
    Contrasenas contrasenas;
    VisorDeDatos visor;
    Fotos fotos;
    SeleccionFotos seleccion;
    AjustesDeVentana ajustes;

    /// Whether the question stands that comes before putting a backup back.
    bool pidiendoDevolver() const { return pidiendoDevolver_; }
    Q_INVOKABLE void pedirDevolver();
    /// Accepted, the system's own check of the owner follows, and then the work.
    Q_INVOKABLE void resolverDevolver(bool aceptada);
    /// Turns the backup of the selected phone, or the first there is, into plain files.
    Q_INVOKABLE void sacarMisDatos();
    /// What has been taken out; where that is nothing, it is taken out first.
    Q_INVOKABLE void verMisDatos();
    /// Reads the saved passwords, once the system has made sure of the owner.
    Q_INVOKABLE void buscarContrasenas();
    Q_INVOKABLE void abrirMiCarpeta();

    // The answers to the questions before photos leave the phone. Accepted, the system's own check of the owner
    // follows, and then the work.
    Q_INVOKABLE void resolverLiberar(bool aceptada);
    Q_INVOKABLE void resolverBorrarTodas(bool aceptada);
    Q_INVOKABLE void resolverBorrarMarcadas(bool aceptada);
    /// Without a backup the library is not deleted: a notice says what to do first.
    Q_INVOKABLE void pedirBorrarTodas();
    QString preguntaDeBorrarTodas() const;
    /// Takes the photos out of the backup.
    Q_INVOKABLE void recuperarFotos();

    /// What the program stands on, for those who ask: name, version, licence and what it is for.
    static QVariantList piezas();
    static QString version();

signals:
    void pidiendoDevolverCambio();
    void preguntaDeBorrarTodasCambio();

private:
    void quizaOtroTelefono();
    /// Does it to the selected phone once the system has made sure of the owner, if it is still the selected one and no
    /// job runs by then.
    void trasConfirmar(Cerradura::Motivo motivo, const std::function<void(const QString &udid)> &hacer);

    bool pidiendoDevolver_ = false;
    QString carpetaEnVista;

    Modelo *modeloPuntero() { return &modelo; }
    Copias *copiasPuntero() { return &copias; }
    CopiasAutomaticas *automaticasPuntero() { return &automaticas; }
    BateriaYRed *bateriaPuntero() { return &bateria; }
    Cerradura *cerraduraPuntero() { return &cerradura; }
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
