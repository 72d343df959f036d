#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace vellora
{

/// Tells when a phone has left the cable, while a tool that would not notice works on it. Asks the listing tool every
/// few seconds, and believes an absence the second time. A phone that left and came back in between is noticed by the
/// tool: on a dead connection it neither speaks nor rests. Main thread only.
class VigilanteDelTelefono : public QObject
{
    Q_OBJECT

public:
    static constexpr int milisegundosEntreMiradas = 3000;

    explicit VigilanteDelTelefono(QString udid, QObject *padre = nullptr);

    /// A tool that is silent for so long, and busy all the while, waits for a connection that is gone; one that waits
    /// for the owner's passcode rests.
    static constexpr int segundosDeSilencio = 15;

    /// `herramienta`: process identifier of the tool.
    void empezar(qint64 herramienta);
    void parar() { reloj.stop(); }
    /// The tool has written a line.
    void haHablado();

signals:
    /// Once, at the most, after each `empezar`.
    void perdido();

private:
    void mirar();
    void juzgar(bool conectado);
    bool daVueltasEnVano() const;

    QString udid;
    QTimer reloj;
    int ausencias = 0;
    bool mirando = false;
    qint64 herramienta = 0;
    QElapsedTimer silencio;
    double procesadorAlCallar = 0; ///< seconds of processor that the tool had used when it last spoke
};

} // namespace vellora
