#pragma once

#include "session/OperacionesDeBateria.h"

#include <QObject>
#include <QVariantList>

namespace vellora
{

class Modelo;

/// What the selected phone tells beyond its plain facts: its battery, how that has gone, and its networks. A phone that
/// does not answer leaves what is shown as it was. Main thread only.
class BateriaYRed : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int salud READ salud NOTIFY cambio)
    Q_PROPERTY(QString resumen READ resumen NOTIFY cambio)
    Q_PROPERTY(bool verBateria READ verBateria NOTIFY cambio)
    Q_PROPERTY(vellora::DatosBateria bateria READ bateriaOVacia NOTIFY cambio)
    Q_PROPERTY(QVariantList historial READ historialVariante NOTIFY cambio)
    Q_PROPERTY(QString medida READ medida NOTIFY cambio)
    Q_PROPERTY(bool hayAvisoDeRed READ hayAvisoDeRed NOTIFY cambio)
    Q_PROPERTY(QStringList avisosDeRed READ avisosDeRed NOTIFY cambio)

public:
    explicit BateriaYRed(Modelo &elModelo, QObject *padre = nullptr);

    const std::optional<qint64> &bateriaCiclos() const { return silenciosa.ciclos; }
    const std::optional<qint64> &bateriaSalud() const { return silenciosa.salud; }
    const std::optional<double> &bateriaGrados() const { return silenciosa.grados; }
    const std::optional<DatosBateria> &bateria() const { return bateria_; }
    const std::optional<InfoRed> &red() const { return red_; }

    /// Percent, -1 when not known.
    int salud() const { return static_cast<int>(silenciosa.salud.value_or(-1)); }
    /// "91 % de salud · 214 ciclos · 28,9 °C", of what is known; empty for nothing.
    QString resumen() const;
    bool verBateria() const { return verBateria_; }
    /// What the last measurement that was written down says of the months; empty before one.
    const QString &medida() const { return medida_; }
    bool hayAvisoDeRed() const { return red_ && red_->hayAlgo(); }
    /// Why the networks are worth a look, in sentences.
    QStringList avisosDeRed() const;

    /// As a job each; while another runs they do nothing.
    Q_INVOKABLE void mirar();
    Q_INVOKABLE void apuntar();
    Q_INVOKABLE void cierra();

    /// Where the engine keeps the history.
    QString fichero() const;

    /// A refresh has been applied: asks for the battery and for the networks, silently, until they have told once.
    void cargarSaludBateria();
    void quizaMirarRed();

signals:
    void cambio();

private:
    void olvidarSiEsOtro();
    DatosBateria bateriaOVacia() const { return bateria_.value_or(DatosBateria()); }
    QVariantList historialVariante() const;

    Modelo &modelo;
    QString deQuien; ///< UDID that all below is of
    SaludBateria silenciosa;
    bool preguntando = false;
    std::optional<DatosBateria> bateria_;
    HistorialBateria historial;
    bool verBateria_ = false;
    QString medida_;
    std::optional<InfoRed> red_;
    bool mirandoRed = false;
};

} // namespace vellora
