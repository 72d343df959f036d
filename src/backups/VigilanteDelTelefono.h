#pragma once

#include <QObject>
#include <QTimer>

namespace vellora
{

/// Tells when a phone has left the cable, while a tool that would not notice works on it. Asks the listing tool every
/// few seconds, and believes an absence the second time. Main thread only.
class VigilanteDelTelefono : public QObject
{
    Q_OBJECT

public:
    static constexpr int milisegundosEntreMiradas = 3000;

    explicit VigilanteDelTelefono(QString udid, QObject *padre = nullptr);

    void empezar() { reloj.start(milisegundosEntreMiradas); }
    void parar() { reloj.stop(); }

signals:
    /// Once, at the most, after each `empezar`.
    void perdido();

private:
    void mirar();

    QString udid;
    QTimer reloj;
    int ausencias = 0;
};

} // namespace vellora
