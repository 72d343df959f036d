#pragma once

#include "engine/device/Afc.h"

#include <functional>
#include <vector>

namespace vellora::motor
{

/// Several connections to the file service of one phone: a single one waits for the phone most of its time.
class Conexiones
{
public:
    /// From here on nothing is gained.
    static constexpr size_t maximo = 4;

    /// Opens them side by side. Fails when one of them cannot be had.
    static Resultado<Conexiones> abrir(const Telefono &telefono, size_t cuantas = maximo);

    /// Runs `trabajo` on so many threads, at most one for each connection, and waits for all of them.
    void repartir(size_t cuantos, const std::function<void(Afc &afc, size_t numero)> &trabajo);
    /// For what needs but one.
    Afc &primera() { return abiertas.front(); }

private:
    explicit Conexiones(std::vector<Afc> lasAbiertas) : abiertas(std::move(lasAbiertas)) {}

    std::vector<Afc> abiertas;
};

} // namespace vellora::motor
