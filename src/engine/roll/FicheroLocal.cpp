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

bool sonIguales(int uno, int otro)
{
    constexpr size_t bloque = 128UL * 1024;
    struct stat suyo = {};
    struct stat ajeno = {};
    if (fstat(uno, &suyo) != 0 || fstat(otro, &ajeno) != 0 || !S_ISREG(suyo.st_mode) || suyo.st_size != ajeno.st_size)
        return false;
    const auto unos = std::make_unique<std::array<char, bloque>>();
    const auto otros = std::make_unique<std::array<char, bloque>>();
    for (off_t donde = 0; donde < suyo.st_size;) {
        const auto leidos = pread(uno, unos->data(), bloque, donde);
        if (leidos <= 0 || pread(otro, otros->data(), bloque, donde) != leidos ||
            !std::equal(unos->begin(), unos->begin() + leidos, otros->begin()))
            return false;
        donde += leidos;
    }
    return true;
}

} // namespace vellora::motor
