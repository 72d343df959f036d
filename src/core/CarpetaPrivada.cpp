#include "core/CarpetaPrivada.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::CarpetaPrivada
{

namespace
{

constexpr int soloCarpeta = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t deTodos = S_IRWXU | S_IRWXG | S_IRWXO;
// What lies deeper is brought up first: a descriptor for each level would not last.
constexpr int honduraMaxima = 64;

/// Removes what is in a folder.
class Vaciado
{
public:
    explicit Vaciado(const Descriptor &laRaiz) : raiz(laRaiz)
    {
        struct stat ficha = {};
        if (fstat(*raiz, &ficha) == 0)
            volumen = ficha.st_dev;
    }
    bool hacer()
    {
        do {
            subidas = false;
            todo = true;
            vaciar(*raiz, 0);
        } while (subidas && todo);
        return todo;
    }

private:
    void vaciar(int carpeta, int hondura)
    {
        // The stream takes its descriptor with it when it is closed.
        const std::unique_ptr<DIR, int (*)(DIR *)> lista(fdopendir(openat(carpeta, ".", soloCarpeta)), &closedir);
        while (const auto *una = lista ? readdir(lista.get()) : nullptr) {
            if (std::strcmp(una->d_name, ".") != 0 && std::strcmp(una->d_name, "..") != 0)
                quitarUna(carpeta, una->d_name, hondura);
        }
        todo = todo && lista;
    }
    void quitarUna(int carpeta, const char *nombre, int hondura)
    {
        struct stat ficha = {};
        if (unlinkat(carpeta, nombre, 0) == 0 || fstatat(carpeta, nombre, &ficha, AT_SYMLINK_NOFOLLOW) != 0)
            return;
        if (!S_ISDIR(ficha.st_mode)) {
            todo = false;
            return;
        }
        if (hondura >= honduraMaxima && subir(carpeta, nombre))
            return;
        fchmodat(carpeta, nombre, S_IRWXU, 0); // nobody else can put a link there: the folder is ours alone
        const Descriptor dentro(openat(carpeta, nombre, soloCarpeta));
        const bool suya = dentro && fstat(*dentro, &ficha) == 0 && ficha.st_dev == volumen;
        if (suya && hondura < honduraMaxima)
            vaciar(*dentro, hondura + 1);
        todo = suya && (unlinkat(carpeta, nombre, AT_REMOVEDIR) == 0 || subidas) && todo;
    }
    bool subir(int carpeta, const char *nombre)
    {
        const auto arriba = ".hondo-" + QByteArray::number(++cuantas);
        const bool bien = renameat(carpeta, nombre, *raiz, arriba.constData()) == 0;
        subidas = subidas || bien;
        return bien;
    }

    const Descriptor &raiz;
    dev_t volumen = 0;
    bool todo = true;
    bool subidas = false;
    int cuantas = 0;
};

void cerrarDesde(int padre, const char *nombre, dev_t volumen, int hondura)
{
    const Descriptor carpeta(openat(padre, nombre, soloCarpeta));
    struct stat ficha = {};
    if (!carpeta || fstat(*carpeta, &ficha) != 0 || ficha.st_uid != geteuid() || ficha.st_dev != volumen)
        return;
    if ((ficha.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        fchmod(*carpeta, ficha.st_mode & S_IRWXU);
    if (hondura <= 0)
        return;
    const std::unique_ptr<DIR, int (*)(DIR *)> lista(fdopendir(openat(*carpeta, ".", soloCarpeta)), &closedir);
    while (const auto *una = lista ? readdir(lista.get()) : nullptr) {
        const bool deVerdad = std::strcmp(una->d_name, ".") != 0 && std::strcmp(una->d_name, "..") != 0;
        if (deVerdad && (una->d_type == DT_DIR || una->d_type == DT_UNKNOWN))
            cerrarDesde(*carpeta, una->d_name, volumen, hondura - 1);
    }
}

} // namespace

void cerrar(const QString &ruta, bool hastaElFondo)
{
    const auto nombre = QFile::encodeName(ruta);
    struct stat ficha = {};
    if (lstat(nombre.constData(), &ficha) == 0)
        cerrarDesde(AT_FDCWD, nombre.constData(), ficha.st_dev, hastaElFondo ? honduraMaxima : 0);
}

Descriptor abrir(const QString &ruta)
{
    QDir().mkpath(QFileInfo(ruta).path());
    const auto nombre = QFile::encodeName(ruta);
    mkdir(nombre.constData(), S_IRWXU);
    Descriptor carpeta(open(nombre.constData(), soloCarpeta));
    struct stat ficha = {};
    if (!carpeta || fstat(*carpeta, &ficha) != 0 || ficha.st_uid != geteuid())
        return Descriptor();
    if ((ficha.st_mode & deTodos) != S_IRWXU && fchmod(*carpeta, S_IRWXU) != 0)
        return Descriptor();
    const bool privada = fstat(*carpeta, &ficha) == 0 && (ficha.st_mode & deTodos) == S_IRWXU;
    return privada ? std::move(carpeta) : Descriptor();
}

QString enLaCache(const QString &dentro)
{
    const auto suya = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u"/vellora"_s;
    return dentro.isEmpty() ? suya : suya + u'/' + dentro;
}

QString deLaSesion()
{
    const auto sesion = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!sesion.isEmpty() && QFileInfo(sesion).isDir() && abrir(sesion + u"/vellora"_s))
        return sesion + u"/vellora"_s;
    const auto otra = enLaCache(u"sesion"_s);
    return abrir(enLaCache()) && abrir(otra) ? otra : QString();
}

bool quitar(int padre, const QByteArray &nombre)
{
    const Descriptor carpeta(openat(padre, nombre.constData(), soloCarpeta));
    struct stat ficha = {};
    if (!carpeta || fstat(*carpeta, &ficha) != 0 || ficha.st_uid != geteuid())
        return false;
    return Vaciado(carpeta).hacer() && unlinkat(padre, nombre.constData(), AT_REMOVEDIR) == 0;
}

bool quitar(const QString &ruta)
{
    const QFileInfo info(ruta);
    const Descriptor padre(open(QFile::encodeName(info.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return padre && quitar(*padre, QFile::encodeName(info.fileName()));
}

} // namespace vellora::CarpetaPrivada
