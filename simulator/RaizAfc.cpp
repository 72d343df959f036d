#include "RaizAfc.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <memory>
#include <sys/syscall.h>
#include <unistd.h>

namespace simulado
{
namespace
{

struct CierraCarpeta {
    void operator()(DIR *carpeta) const { closedir(carpeta); }
};

QByteArray sinBarras(QByteArray ruta)
{
    while (ruta.size() > 1 && ruta.endsWith('/'))
        ruta.chop(1);
    return ruta;
}

} // namespace

/// The folder that holds an entry, opened, and the entry's name in it.
struct RaizAfc::Padre {
    Padre(int carpetaAbierta, const QByteArray &nombreEnElla) : carpeta(carpetaAbierta), nombre(nombreEnElla) {}
    ~Padre()
    {
        if (carpeta >= 0) {
            const int guardado = errno;
            close(carpeta);
            errno = guardado;
        }
    }
    Padre(const Padre &) = delete;
    Padre &operator=(const Padre &) = delete;

    bool vale() const { return carpeta >= 0; }
    const int carpeta;
    const QByteArray nombre;
};

EstadoAfc estadoDeErrno(int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        return AfcNoExiste;
    case EISDIR:
        return AfcEsCarpeta;
    case EACCES:
    case EPERM:
    case EXDEV:
        return AfcProhibido;
    case EEXIST:
        return AfcYaExiste;
    case ENOSPC:
        return AfcSinSitio;
    case EWOULDBLOCK:
        return AfcOcupado;
    case ENOTEMPTY:
        return AfcNoVacia;
    case EINVAL:
    case EBADF:
    case ENAMETOOLONG:
        return AfcArgumentoMalo;
    default:
        return AfcErrorDeDisco;
    }
}

RaizAfc::RaizAfc(const QByteArray &carpeta) : raiz_(open(carpeta.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

RaizAfc::~RaizAfc()
{
    if (raiz_ >= 0)
        close(raiz_);
}

int RaizAfc::abrir(const QByteArray &ruta, int opciones) const
{
    // The kernel itself holds the walk inside the folder, as if it were a root directory.
    open_how como{};
    como.flags = quint64(opciones | O_CLOEXEC);
    como.mode = opciones & O_CREAT ? 0644 : 0;
    como.resolve = RESOLVE_IN_ROOT | RESOLVE_NO_MAGICLINKS;
    const QByteArray sinVacio = ruta.isEmpty() ? QByteArray("/") : ruta;
    return int(syscall(SYS_openat2, raiz_, sinVacio.constData(), &como, sizeof como));
}

RaizAfc::Padre RaizAfc::padreDe(const QByteArray &ruta) const
{
    const QByteArray limpia = sinBarras(ruta);
    const qsizetype corte = limpia.lastIndexOf('/');
    const QByteArray nombre = limpia.mid(corte + 1);
    if (nombre.isEmpty() || nombre == "." || nombre == "..") {
        errno = EINVAL;
        return {-1, nombre};
    }
    return {abrir(corte <= 0 ? QByteArray("/") : limpia.left(corte), O_PATH | O_DIRECTORY), nombre};
}

std::optional<QByteArrayList> RaizAfc::listar(const QByteArray &ruta) const
{
    const int descriptor = abrir(ruta, O_RDONLY | O_DIRECTORY);
    if (descriptor < 0)
        return {};
    const std::unique_ptr<DIR, CierraCarpeta> carpeta(fdopendir(descriptor));
    // Clients drop the first two names without looking at them.
    QByteArrayList nombres{".", ".."};
    while (const dirent *entrada = readdir(carpeta.get())) {
        const QByteArray nombre(entrada->d_name);
        if (nombre != "." && nombre != "..")
            nombres.append(nombre);
    }
    std::sort(nombres.begin() + 2, nombres.end());
    return nombres;
}

bool RaizAfc::ficha(const QByteArray &ruta, struct stat &ficha) const
{
    const int descriptor = abrir(ruta, O_PATH | O_NOFOLLOW);
    if (descriptor < 0)
        return false;
    const bool bien = fstat(descriptor, &ficha) == 0;
    close(descriptor);
    return bien;
}

std::optional<qint64> RaizAfc::nacimiento(const QByteArray &ruta) const
{
    const int descriptor = abrir(ruta, O_PATH | O_NOFOLLOW);
    struct statx ficha {
    };
    const bool bien = descriptor >= 0 && statx(descriptor, "", AT_EMPTY_PATH, STATX_BTIME, &ficha) == 0;
    if (descriptor >= 0)
        close(descriptor);
    if (!bien || (ficha.stx_mask & STATX_BTIME) == 0)
        return {};
    return ficha.stx_btime.tv_sec * 1'000'000'000LL + ficha.stx_btime.tv_nsec;
}

QByteArray RaizAfc::destinoDeEnlace(const QByteArray &ruta) const
{
    const int descriptor = abrir(ruta, O_PATH | O_NOFOLLOW);
    if (descriptor < 0)
        return {};
    char destino[4096];
    const ssize_t largo = readlinkat(descriptor, "", destino, sizeof destino);
    close(descriptor);
    return QByteArray(destino, std::max<ssize_t>(largo, 0));
}

bool RaizAfc::crearCarpeta(const QByteArray &ruta) const
{
    QByteArray hasta;
    const QByteArrayList partes = sinBarras(ruta).split('/');
    for (const QByteArray &parte : partes) {
        if (parte.isEmpty())
            continue;
        hasta += '/' + parte;
        const Padre padre = padreDe(hasta);
        if (!padre.vale())
            return false;
        if (mkdirat(padre.carpeta, padre.nombre.constData(), 0755) != 0 && errno != EEXIST)
            return false;
    }
    return true;
}

bool RaizAfc::borrar(const QByteArray &ruta) const
{
    const Padre padre = padreDe(ruta);
    if (!padre.vale())
        return false;
    if (unlinkat(padre.carpeta, padre.nombre.constData(), 0) == 0)
        return true;
    return errno == EISDIR && unlinkat(padre.carpeta, padre.nombre.constData(), AT_REMOVEDIR) == 0;
}

bool RaizAfc::vaciar(int carpeta) const
{
    const std::unique_ptr<DIR, CierraCarpeta> abierta(fdopendir(carpeta));
    if (!abierta)
        return false;
    while (const dirent *entrada = readdir(abierta.get())) {
        const QByteArray nombre(entrada->d_name);
        if (nombre == "." || nombre == ".." || unlinkat(carpeta, nombre.constData(), 0) == 0)
            continue;
        const int hija = openat(carpeta, nombre.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (hija < 0 || !vaciar(hija) || unlinkat(carpeta, nombre.constData(), AT_REMOVEDIR) != 0)
            return false;
    }
    return true;
}

bool RaizAfc::borrarArbol(const QByteArray &ruta) const
{
    if (borrar(ruta))
        return true;
    if (errno != ENOTEMPTY)
        return false;
    const int carpeta = abrir(ruta, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    return carpeta >= 0 && vaciar(carpeta) && borrar(ruta);
}

bool RaizAfc::renombrar(const QByteArray &desde, const QByteArray &a) const
{
    const Padre origen = padreDe(desde);
    const Padre destino = padreDe(a);
    return origen.vale() && destino.vale() &&
           renameat(origen.carpeta, origen.nombre.constData(), destino.carpeta, destino.nombre.constData()) == 0;
}

bool RaizAfc::enlazar(const QByteArray &destino, const QByteArray &ruta, bool simbolico) const
{
    const Padre nuevo = padreDe(ruta);
    if (!nuevo.vale())
        return false;
    if (simbolico)
        return symlinkat(destino.constData(), nuevo.carpeta, nuevo.nombre.constData()) == 0;
    const Padre viejo = padreDe(destino);
    return viejo.vale() &&
           linkat(viejo.carpeta, viejo.nombre.constData(), nuevo.carpeta, nuevo.nombre.constData(), 0) == 0;
}

bool RaizAfc::ponerFecha(const QByteArray &ruta, quint64 nanosegundos) const
{
    constexpr quint64 porSegundo = 1'000'000'000;
    const timespec fecha{time_t(nanosegundos / porSegundo), long(nanosegundos % porSegundo)};
    const timespec fechas[2] = {fecha, fecha};
    const Padre padre = padreDe(ruta);
    return padre.vale() && utimensat(padre.carpeta, padre.nombre.constData(), fechas, AT_SYMLINK_NOFOLLOW) == 0;
}

} // namespace simulado
