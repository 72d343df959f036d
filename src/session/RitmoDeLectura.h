#pragma once

#include <QtGlobal>

namespace vellora
{

/// When the phones are read again without anybody asking. A reading starts eight processes, so there is one when
/// something changed, when the last one failed, and every five minutes while the window is looked at. Seconds are those
/// of any clock that only goes forward.
class RitmoDeLectura
{
public:
    /// A reading came back; `entera` as `Detector::Lectura` says it.
    void leida(bool entera, qint64 ahora);
    /// What was asked after that reading, and belongs to it, got no good answer.
    void fallo();
    /// A phone came, left or was trusted, the owner turned to the window, a job has ended.
    void algoCambio();

    /// `hayAvisos`: usbmuxd says by itself when something changes, or is not there, which is as good.
    bool toca(qint64 ahora, bool enVista, bool hayAvisos) const;

    /// The first ones after a failure follow the clock: the owner is about to unlock the phone.
    static constexpr int fallosSeguidos = 8;
    static constexpr qint64 segundosEntreFallos = 60;
    static constexpr qint64 segundosEntreLecturas = 300;

private:
    bool cambiado = true;
    bool fallida = false;
    int fallos = 0; ///< in a row
    qint64 ultima = 0;
};

} // namespace vellora
