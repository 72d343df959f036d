#include "engine/roll/FicheroLocal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace vellora::motor
{

bool escribir(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const auto escritos = write(descriptor, bytes.data(), static_cast<size_t>(bytes.size()));
        if (escritos < 0 && errno == EINTR)
            continue;
        if (escritos <= 0)
            return false;
        bytes = bytes.sliced(escritos);
    }
    return true;
}

void ponerFecha(int descriptor, const QDateTime &modificado)
{
    const auto ms = modificado.toMSecsSinceEpoch();
    if (!modificado.isValid() || ms < 0)
        return;
    const timespec fecha{static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000 * 1'000'000)};
    const std::array<timespec, 2> fechas{fecha, fecha};
    futimens(descriptor, fechas.data());
}

Parecido comparar(int suyo, int entero)
{
    constexpr size_t bloque = 128UL * 1024;
    const auto unos = std::make_unique<std::array<char, bloque>>();
    const auto otros = std::make_unique<std::array<char, bloque>>();
    struct stat como = {};
    if (fstat(suyo, &como) != 0 || !S_ISREG(como.st_mode))
        return Parecido::Otro;
    for (off_t donde = 0;;) {
        const auto leidos = pread(suyo, unos->data(), bloque, donde);
        const auto debidos = pread(entero, otros->data(), bloque, donde);
        if (leidos < 0 || debidos < leidos || !std::equal(unos->begin(), unos->begin() + leidos, otros->begin()))
            return Parecido::Otro;
        if (leidos == 0)
            return debidos == 0 ? Parecido::Igual : Parecido::Principio;
        donde += leidos;
    }
}

} // namespace vellora::motor
