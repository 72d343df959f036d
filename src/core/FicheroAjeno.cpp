#include "core/FicheroAjeno.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellora
{

Descriptor abrirAjeno(int carpeta, const QByteArray &relativa)
{
    // Without O_NONBLOCK a pipe is waited for before anything can be asked of it.
    Descriptor abierto(
        openat(carpeta, relativa.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    struct stat ficha = {};
    if (!abierto || fstat(*abierto, &ficha) != 0 || !S_ISREG(ficha.st_mode))
        return Descriptor();
    return abierto;
}

Descriptor abrirAjeno(const QString &ruta)
{
    return abrirAjeno(AT_FDCWD, QFile::encodeName(ruta));
}

std::optional<qint64> largoDeAjeno(const QString &ruta)
{
    struct stat ficha = {};
    if (lstat(QFile::encodeName(ruta).constData(), &ficha) != 0 || !S_ISREG(ficha.st_mode))
        return {};
    return ficha.st_size;
}

std::optional<QByteArray> leerAjeno(const QString &ruta, qint64 maximo)
{
    const auto abierto = abrirAjeno(ruta);
    struct stat ficha = {};
    if (!abierto || fstat(*abierto, &ficha) != 0 || ficha.st_size > maximo)
        return {};
    QByteArray bytes(ficha.st_size, Qt::Uninitialized);
    qsizetype leidos = 0;
    while (leidos < bytes.size()) {
        const auto n = read(*abierto, bytes.data() + leidos, static_cast<size_t>(bytes.size() - leidos));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return {};
        if (n == 0)
            break; // it has become shorter meanwhile
        leidos += n;
    }
    bytes.truncate(leidos);
    return bytes;
}

} // namespace vellora
