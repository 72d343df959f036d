#include "session/Vigia.h"

#include "core/Tarea.h"

#include <QSet>

#include <utility>

namespace vellora
{

Vigia::Vigia(Tarea &laTarea, QObject *padre) : QObject(padre), tarea(laTarea)
{
    connect(&escucha, &EscuchaDeUsbmuxd::llego, this, [this] {
        llegoAlguno = leyendo > 0;
        if (!llegoAlguno)
            algoCambio();
    });
    connect(&escucha, &EscuchaDeUsbmuxd::cambio, this, &Vigia::algoCambio);
    // Queued: who listens to the end of a job may begin the next one.
    connect(&tarea, &Tarea::acabada, this, &Vigia::algoCambio, Qt::QueuedConnection);
    connect(&reloj, &QTimer::timeout, this, [this] {
        escucha.reintentar();
        quiza();
    });
    reloj.start(segundosDelReloj * 1000);
    desde.start();
}

void Vigia::empieza()
{
    ++leyendo;
    llegoAlguno = cambioEnMedio = false;
}

void Vigia::acaba(const Detector::Lectura &lectura)
{
    --leyendo;
    ritmo.leida(lectura.entera(), desde.elapsed() / 1000);
    const QSet<QString> listados(lectura.conectados.cbegin(), lectura.conectados.cend());
    // What arrived meanwhile and was seen all the same needs no second look.
    if (std::exchange(cambioEnMedio, false) ||
        (std::exchange(llegoAlguno, false) && !listados.contains(escucha.presentes())))
        algoCambio();
}

void Vigia::algoCambio()
{
    cambioEnMedio = leyendo > 0;
    ritmo.algoCambio();
    quiza();
}

void Vigia::ponEnVista(bool vista)
{
    if (std::exchange(enVista, vista) != vista && vista)
        quiza();
}

void Vigia::quiza()
{
    const bool hayAvisos = escucha.estado() != EscuchaDeUsbmuxd::Estado::SinAvisos;
    if (leyendo == 0 && !tarea.enMarcha() && ritmo.toca(desde.elapsed() / 1000, enVista, hayAvisos))
        emit toca();
}

} // namespace vellora
