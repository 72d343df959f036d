#pragma once

#include "session/Detector.h"
#include "session/EscuchaDeUsbmuxd.h"
#include "session/RitmoDeLectura.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace vellora
{

class Tarea;

/// Says when the phones have to be read: when usbmuxd tells of a change, when a job ends, and as `RitmoDeLectura` has
/// it, but never beside a job or another reading. Main thread only.
class Vigia : public QObject
{
    Q_OBJECT

public:
    static constexpr int segundosDelReloj = 15;

    explicit Vigia(Tarea &tarea, QObject *padre = nullptr);

    /// A reading begins, whoever asked for it, and comes back.
    void empieza();
    void acaba(const Detector::Lectura &lectura);
    /// What is shown holds no more.
    void algoCambio();
    /// What was asked after the last reading, and belongs to it, got no good answer.
    void fallo() { ritmo.fallo(); }
    void ponEnVista(bool vista);

signals:
    void toca();

private:
    void quiza();

    Tarea &tarea;
    EscuchaDeUsbmuxd escucha;
    RitmoDeLectura ritmo;
    QElapsedTimer desde;
    QTimer reloj;
    bool enVista = false;
    bool llegoAlguno = false;   ///< while the present reading runs
    bool cambioEnMedio = false; ///< the same
    int leyendo = 0;            ///< readings that have not come back
};

} // namespace vellora
