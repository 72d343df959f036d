#pragma once

#include "photos/LiberarEspacio.h"

#include <QObject>

#include <optional>

namespace vellora
{

class Modelo;

/// What the window and the commands see of the phone's photos: where they are kept, and the questions before they leave
/// the phone. Main thread only.
class Fotos : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString carpeta READ carpeta NOTIFY cambioDeCarpeta)
    Q_PROPERTY(bool carpetaEsLaDeSiempre READ carpetaEsLaDeSiempre NOTIFY cambioDeCarpeta)
    Q_PROPERTY(QString aviso READ aviso NOTIFY cambio)
    Q_PROPERTY(bool confirmandoLiberar READ confirmandoLiberar NOTIFY cambio)
    Q_PROPERTY(QString preguntaDeLiberar READ preguntaDeLiberar NOTIFY cambio)
    Q_PROPERTY(bool confirmandoBorrarTodas READ confirmandoBorrarTodas NOTIFY cambio)
    Q_PROPERTY(QString pocoSitio READ pocoSitio NOTIFY cambioDeCarpeta)

public:
    /// Below this a phone begins to have trouble.
    static constexpr qint64 pocoEspacio = 5'000'000'000;

    explicit Fotos(Modelo &elModelo, QObject *padre = nullptr);

    QString carpeta() const;
    bool carpetaEsLaDeSiempre() const;
    Q_INVOKABLE void ponCarpeta(const QString &ruta);
    Q_INVOKABLE void volverACarpetaPorDefecto();
    Q_INVOKABLE void abrirCarpeta();

    /// A text that stands until it is closed; empty when there is none.
    const QString &aviso() const { return aviso_; }
    void ponAviso(const QString &texto);
    Q_INVOKABLE void cerrarAviso() { ponAviso({}); }

    /// Without a phone, or while a job runs, nothing happens.
    Q_INVOKABLE void copiar();

    const std::optional<PlanLiberar> &planLiberar() const { return plan; }
    bool confirmandoLiberar() const { return confirmandoLiberar_; }
    QString preguntaDeLiberar() const;
    /// Works out what can go; the question or a notice follows.
    Q_INVOKABLE void prepararLiberacion();
    void dejarDePreguntarPorLiberar();

    bool confirmandoBorrarTodas() const { return confirmandoBorrarTodas_; }
    void preguntarPorTodas(bool si);
    void borrarTodas(const QString &udid);

    /// The strip's sentence when the phone has little room left; empty when it has not, or it is not known.
    QString pocoSitio() const;

signals:
    void cambio();
    void cambioDeCarpeta();

private:
    Modelo &modelo;
    QString aviso_;
    std::optional<PlanLiberar> plan;
    bool confirmandoLiberar_ = false;
    bool confirmandoBorrarTodas_ = false;
};

} // namespace vellora
