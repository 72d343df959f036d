// Preloaded into a program: a disk that has lost what the machine still remembers. Of files whose name holds
// MEDIO_MALO, reading gives what is there as long as it comes from memory; from the moment that a file's pages are
// dropped, or it is read past them, each of its blocks of 1 MiB begins with 4 KiB of other bytes.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <mutex>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

std::mutex cerrojo;
std::set<ino_t> soltados;

template <typename Funcion> Funcion *verdadera(const char *nombre)
{
    return reinterpret_cast<Funcion *>(dlsym(RTLD_NEXT, nombre));
}

bool esDelMalo(int fichero)
{
    const char *cual = std::getenv("MEDIO_MALO");
    char ruta[4096] = {};
    const auto enlace = "/proc/self/fd/" + std::to_string(fichero);
    return cual != nullptr && readlink(enlace.c_str(), ruta, sizeof ruta - 1) > 0 && std::strstr(ruta, cual) != nullptr;
}

bool saleDelMedio(int fichero)
{
    struct stat como = {};
    const std::lock_guard guarda(cerrojo);
    return (fcntl(fichero, F_GETFL) & O_DIRECT) != 0 ||
           (fstat(fichero, &como) == 0 && soltados.count(como.st_ino) != 0);
}

} // namespace

extern "C" {

int posix_fadvise64(int fichero, off64_t desde, off64_t largo, int consejo)
{
    static auto *const suya = verdadera<int(int, off64_t, off64_t, int)>("posix_fadvise64");
    struct stat como = {};
    if (consejo == POSIX_FADV_DONTNEED && fstat(fichero, &como) == 0) {
        const std::lock_guard guarda(cerrojo);
        soltados.insert(como.st_ino);
    }
    return suya(fichero, desde, largo, consejo);
}

int posix_fadvise(int fichero, off_t desde, off_t largo, int consejo)
{
    return posix_fadvise64(fichero, desde, largo, consejo);
}

ssize_t pread64(int fichero, void *donde, size_t cuantos, off64_t desde)
{
    static auto *const suya = verdadera<ssize_t(int, void *, size_t, off64_t)>("pread64");
    const auto leidos = suya(fichero, donde, cuantos, desde);
    if (leidos > 0 && esDelMalo(fichero) && saleDelMedio(fichero))
        std::memset(donde, 0xA5, std::min<size_t>(static_cast<size_t>(leidos), 4096));
    return leidos;
}

ssize_t pread(int fichero, void *donde, size_t cuantos, off_t desde)
{
    return pread64(fichero, donde, cuantos, desde);
}
}
