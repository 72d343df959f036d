#include "core/SegundoPlano.h"

#include <algorithm>

namespace vellora
{

SegundoPlano &SegundoPlano::delPrograma()
{
    // Never destroyed: a thread that did not end in time may still come back to it.
    static auto *const unico = new SegundoPlano;
    return *unico;
}

bool SegundoPlano::preparar()
{
    if (!std::exchange(preparado, true))
        qAddPostRoutine([] { delPrograma().terminar(); });
    recoger();
    return !fin.stop_requested();
}

/// Joins those that have ended: they want nothing of the mutex any more.
void SegundoPlano::recoger()
{
    const std::lock_guard cerrojo(mutex);
    hilos.remove_if([](Hilo &uno) {
        if (uno.acabado)
            uno.hilo.join();
        return uno.acabado;
    });
}

void SegundoPlano::terminar()
{
    fin.request_stop();
    {
        std::unique_lock cerrojo(mutex);
        alAcabar.wait_for(cerrojo, limite, [this] {
            return std::all_of(hilos.cbegin(), hilos.cend(), [](const Hilo &uno) { return uno.acabado; });
        });
    }
    recoger();
    queda = !hilos.empty();
}

} // namespace vellora
