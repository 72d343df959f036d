#include "engine/roll/Medio.h"

#include "engine/Interrupcion.h"
#include "engine/roll/Huella.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Direct reading asks for addresses and lengths that are multiples of the disk's block; no disk has larger ones.
constexpr size_t alineado = 4096;
constexpr size_t bloque = 1024UL * 1024;
constexpr size_t paginasALaVez = 64UL * 1024;

struct Liberar {
    void operator()(void *memoria) const { std::free(memoria); } // NOLINT(cppcoreguidelines-no-malloc)
};

/// Whether memory still holds any of the file, as far as can be told.
bool quedaEnMemoria(int descriptor, size_t largo)
{
    const auto pagina = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    std::array<unsigned char, paginasALaVez> paginas{};
    for (size_t desde = 0; desde < largo; desde += paginasALaVez * pagina) {
        const auto suyos = std::min(largo - desde, paginasALaVez * pagina);
        // Mapping reads nothing.
        auto *vista = mmap(nullptr, suyos, PROT_READ, MAP_PRIVATE, descriptor, static_cast<off_t>(desde));
        if (vista == MAP_FAILED)
            return true;
        const bool seSabe = mincore(vista, suyos, paginas.data()) == 0;
        munmap(vista, suyos);
        const auto hasta = paginas.begin() + static_cast<std::ptrdiff_t>((suyos + pagina - 1) / pagina);
        if (!seSabe || std::any_of(paginas.begin(), hasta, [](auto una) { return (una & 1U) != 0; }))
            return true;
    }
    return false;
}

/// The file system says that it reads this file past the page cache. Others open it for direct reading and read from
/// memory all the same.
bool leeDirecto(int descriptor)
{
    struct statx como = {};
    return statx(descriptor, "", AT_EMPTY_PATH, STATX_DIOALIGN, &como) == 0 && (como.stx_mask & STATX_DIOALIGN) != 0 &&
           como.stx_dio_mem_align != 0 && como.stx_dio_offset_align <= alineado;
}

bool ponDirecto(int descriptor, bool directo)
{
    const int modo = fcntl(descriptor, F_GETFL);
    return modo >= 0 && fcntl(descriptor, F_SETFL, directo ? modo | O_DIRECT : modo & ~O_DIRECT) == 0;
}

} // namespace

Resultado<QByteArray> huellaDelMedio(int descriptor)
{
    using Suma = Resultado<QByteArray>;
    struct stat como = {};
    if (fsync(descriptor) != 0 || fstat(descriptor, &como) != 0)
        return Suma::fallo(u"no se puede asegurar en el disco"_s);
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
    const bool soltada = !quedaEnMemoria(descriptor, static_cast<size_t>(como.st_size));
    bool directo = ponDirecto(descriptor, true);
    if (!soltada && !(directo && leeDirecto(descriptor)))
        return Suma::fallo(u"no se puede leer del disco: otro programa la tiene abierta"_s);

    const std::unique_ptr<void, Liberar> trozo(std::aligned_alloc(alineado, bloque));
    Huella huella;
    off_t donde = 0;
    while (trozo && donde < como.st_size && !Interrupcion::pedida()) {
        const auto leidos = pread(descriptor, trozo.get(), bloque, donde);
        if (leidos < 0 && errno == EINVAL && directo && soltada) {
            directo = !ponDirecto(descriptor, false);
            continue;
        }
        if (leidos <= 0)
            break;
        huella.poner({static_cast<const char *>(trozo.get()), leidos});
        donde += leidos;
    }
    auto suma = huella.sacar();
    struct stat despues = {};
    const bool entera = donde == como.st_size && fstat(descriptor, &despues) == 0 && despues.st_size == como.st_size;
    if (!entera || suma.isEmpty())
        return Suma::fallo(Interrupcion::pedida() ? u"no se ha acabado de leer"_s : u"no se puede leer"_s);
    return suma;
}

} // namespace vellora::motor
