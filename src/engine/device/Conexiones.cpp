#include "engine/device/Conexiones.h"

#include <algorithm>
#include <optional>
#include <thread>

namespace vellora::motor
{

namespace
{

/// Runs `trabajo` for 0, 1, … side by side, the first on this thread.
void aLaVez(size_t cuantos, const std::function<void(size_t)> &trabajo)
{
    std::vector<std::thread> hilos;
    for (size_t numero = 1; numero < cuantos; ++numero)
        hilos.emplace_back(trabajo, numero);
    trabajo(0);
    for (auto &hilo : hilos)
        hilo.join();
}

} // namespace

Resultado<Conexiones> Conexiones::abrir(const Telefono &telefono, size_t cuantas)
{
    std::vector<std::optional<Resultado<Afc>>> dadas(cuantas);
    aLaVez(cuantas, [&](size_t numero) { dadas[numero].emplace(Afc::abrir(telefono)); });
    std::vector<Afc> abiertas;
    for (auto &dada : dadas) {
        if (!*dada)
            return Resultado<Conexiones>::fallo(dada->motivo());
        abiertas.push_back(**std::move(dada));
    }
    return Conexiones(std::move(abiertas));
}

void Conexiones::repartir(size_t cuantos, const std::function<void(Afc &, size_t)> &trabajo)
{
    aLaVez(std::clamp<size_t>(cuantos, 1, abiertas.size()), [&](size_t numero) { trabajo(abiertas[numero], numero); });
}

} // namespace vellora::motor
