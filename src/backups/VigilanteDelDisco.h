#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

namespace vellora
{

/// Tells when a volume has run out of room, if only for a moment: the backup tool goes on over a write that failed, and
/// what it lost shows nowhere. Looks several times a second, off the main thread. Main thread only.
class VigilanteDelDisco : public QObject
{
    Q_OBJECT

public:
    static constexpr int milisegundosEntreMiradas = 250;
    /// Bytes. With less than this left, a batch of small files no longer fits.
    static constexpr qint64 sitioMinimo = 1'000'000;

    explicit VigilanteDelDisco(QString carpeta, QObject *padre = nullptr);

    void empezar() { reloj.start(milisegundosEntreMiradas); }
    void parar() { reloj.stop(); }

signals:
    /// Once, at the most.
    void lleno();

private:
    void mirar();

    QString carpeta;
    QTimer reloj;
    bool mirando = false;
};

} // namespace vellora
