#include "backups/CarpetaDeCopias.h"

#include <QFile>
#include <QHash>

#include <array>
#include <cerrno>
#include <chrono>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <set>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace vellora::CarpetaDeCopias
{

namespace
{

constexpr int soloCarpeta = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr qint64 bytesPorBloque = 512; // the unit of st_blocks
constexpr int honduraMaxima = 16;      // a backup has two levels
constexpr size_t trozo = 1 << 20;

using AlVer = std::function<bool(int carpeta, const char *nombre, const struct stat &ficha)>;

/// Calls `ver` for each entry of a folder; stops at the first that it refuses. False then, and when the folder cannot
/// be read to its end.
bool porCadaEntrada(int carpeta, const AlVer &ver)
{
    const std::unique_ptr<DIR, int (*)(DIR *)> lista(fdopendir(openat(carpeta, ".", soloCarpeta)), &closedir);
    if (!lista)
        return false;
    for (;;) {
        errno = 0;
        const auto *una = readdir(lista.get());
        if (una == nullptr)
            return errno == 0;
        const QByteArrayView nombre(una->d_name);
        struct stat ficha = {};
        if (nombre == "." || nombre == "..")
            continue;
        if (fstatat(carpeta, una->d_name, &ficha, AT_SYMLINK_NOFOLLOW) != 0 || !ver(carpeta, una->d_name, ficha))
            return false;
    }
}

bool copiarFichero(int de, int a, const char *nombre)
{
    const Descriptor origen(openat(de, nombre, O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    const Descriptor copia(openat(a, nombre, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!origen || !copia)
        return false;
    const std::unique_ptr<char[]> bloque(new char[trozo]);
    for (;;) {
        const auto leidos = read(*origen, bloque.get(), trozo);
        if (leidos <= 0)
            return leidos == 0;
        for (ssize_t puestos = 0; puestos < leidos;) {
            const auto ahora = write(*copia, bloque.get() + puestos, static_cast<size_t>(leidos - puestos));
            if (ahora <= 0)
                return false;
            puestos += ahora;
        }
    }
}

bool enlazarArbol(int vieja, int padre, const char *nombre, int hondura)
{
    if (mkdirat(padre, nombre, S_IRWXU) != 0)
        return false;
    const auto nueva = dentro(padre, nombre);
    return nueva && porCadaEntrada(vieja, [&](int carpeta, const char *entrada, const struct stat &ficha) {
               if (S_ISREG(ficha.st_mode))
                   return linkat(carpeta, entrada, *nueva, entrada, 0) == 0;
               if (!S_ISDIR(ficha.st_mode) || hondura >= honduraMaxima)
                   return false;
               const auto abajo = dentro(carpeta, entrada);
               return abajo && enlazarArbol(*abajo, *nueva, entrada, hondura + 1);
           });
}

void porCadaFichero(int carpeta, int hondura, const std::function<void(const struct stat &)> &ver)
{
    porCadaEntrada(carpeta, [&](int esta, const char *nombre, const struct stat &ficha) {
        if (S_ISREG(ficha.st_mode))
            ver(ficha);
        if (!S_ISDIR(ficha.st_mode) || hondura >= honduraMaxima)
            return true;
        if (const auto abajo = dentro(esta, nombre))
            porCadaFichero(*abajo, hondura + 1, ver);
        return true;
    });
}

void porCadaFicheroDe(const QString &ruta, const std::function<void(const struct stat &)> &ver)
{
    const Descriptor carpeta(open(QFile::encodeName(ruta).constData(), soloCarpeta));
    if (carpeta)
        porCadaFichero(*carpeta, 0, ver);
}

} // namespace

Descriptor tomar(const QString &copias, int segundos)
{
    // The folder of backups may be a link itself: that is the owner's own doing.
    Descriptor carpeta(open(QFile::encodeName(copias).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    constexpr auto rato = std::chrono::milliseconds(50);
    const auto hasta = std::chrono::steady_clock::now() + std::chrono::seconds(segundos);
    while (carpeta && flock(*carpeta, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK)
            break;
        if (std::chrono::steady_clock::now() >= hasta)
            return Descriptor();
        std::this_thread::sleep_for(rato);
    }
    return carpeta;
}

Descriptor dentro(int carpeta, const QByteArray &nombre)
{
    return Descriptor(openat(carpeta, nombre.constData(), soloCarpeta));
}

bool hacerGemela(int vieja, int padre, const QByteArray &nueva, const QByteArray &menos)
{
    if (mkdirat(padre, nueva.constData(), S_IRWXU) != 0)
        return false;
    const auto destino = dentro(padre, nueva);
    return destino && porCadaEntrada(vieja, [&](int carpeta, const char *nombre, const struct stat &ficha) {
               if (menos == nombre)
                   return true;
               if (S_ISREG(ficha.st_mode))
                   return copiarFichero(carpeta, *destino, nombre);
               if (!S_ISDIR(ficha.st_mode))
                   return false;
               const auto abajo = dentro(carpeta, nombre);
               return abajo && enlazarArbol(*abajo, *destino, nombre, 1);
           });
}

qint64 bytesEnDisco(const QStringList &carpetas)
{
    std::set<std::pair<dev_t, ino_t>> vistos;
    qint64 bytes = 0;
    for (const auto &una : carpetas) {
        porCadaFicheroDe(una, [&](const struct stat &ficha) {
            if (ficha.st_nlink < 2 || vistos.emplace(ficha.st_dev, ficha.st_ino).second)
                bytes += qint64(ficha.st_blocks) * bytesPorBloque;
        });
    }
    return bytes;
}

qint64 bytesSoloDe(const QString &carpeta)
{
    QHash<quint64, nlink_t> nombres; // of files with several
    qint64 bytes = 0;
    porCadaFicheroDe(carpeta, [&](const struct stat &ficha) {
        if (ficha.st_nlink < 2 || ++nombres[ficha.st_ino] == ficha.st_nlink)
            bytes += qint64(ficha.st_blocks) * bytesPorBloque;
    });
    return bytes;
}

} // namespace vellora::CarpetaDeCopias
