#pragma once

#include "photos/LiberarEspacio.h"

#include <QObject>

namespace vellora
{

class Consentimiento;
class Modelo;

/// What the window and the commands see of the phone's photos: where they are kept, and the questions before they leave
/// the phone. Main thread only.
class Fotos : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString carpeta READ carpeta NOTIFY cambioDeCarpeta)
    Q_PROPERTY(bool carpetaEsLaDeSiempre READ carpetaEsLaDeSiempre NOTIFY cambioDeCarpeta)
    Q_PROPERTY(QString pocoSitio READ pocoSitio NOTIFY cambioDeCarpeta)

public:
    /// Below this a phone begins to have trouble.
    static constexpr qint64 pocoEspacio = 5'000'000'000;

    Fotos(Modelo &elModelo, Consentimiento &elConsentimiento, QObject *padre = nullptr);

    QString carpeta() const;
    bool carpetaEsLaDeSiempre() const;
    Q_INVOKABLE void ponCarpeta(const QString &ruta);
    Q_INVOKABLE void volverACarpetaPorDefecto();
    Q_INVOKABLE void abrirCarpeta();

    /// Without a phone, or while a job runs, nothing happens.
    Q_INVOKABLE void copiar();

    /// Works out what can go; the question or a notice follows, and then the work.
    Q_INVOKABLE void prepararLiberacion();
    /// Looks whether a backup of the phone holds all of its photos; the question or a notice follows, and then the
    /// work.
    void prepararVaciado();

    /// The strip's sentence when the phone has little room left; empty when it has not, or it is not known.
    QString pocoSitio() const;

signals:
    void cambioDeCarpeta();

private:
    void preguntarPorLiberar(const QString &udid, const PlanLiberar &plan);

    Modelo &modelo;
    Consentimiento &consentimiento;
};

} // namespace vellora
