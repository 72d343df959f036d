#include "core/CarpetaDeTrabajo.h"

#include "core/CarpetaPrivada.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr int soloCarpeta = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
const auto nombreEnResultados = u".vellora-trabajo"_s;

QString enLaCache()
{
    return CarpetaPrivada::enLaCache(u"trabajo"_s);
}

/// The volume of a folder that may yet have to be made.
std::optional<dev_t> volumenDe(const QString &ruta)
{
    struct stat ficha = {};
    for (auto una = QDir::cleanPath(QDir().absoluteFilePath(ruta));; una = QFileInfo(una).path()) {
        if (stat(QFile::encodeName(una).constData(), &ficha) == 0)
            return ficha.st_dev;
        if (una == "/"_L1)
            return {};
    }
}

struct Raiz {
    QString ruta;
    Descriptor carpeta = Descriptor();
};

/// The folder that holds the working ones; its descriptor is invalid when there is no private one.
Raiz abrirRaiz(const QString &resultados)
{
    if (!resultados.isEmpty() && volumenDe(resultados) != volumenDe(enLaCache())) {
        const auto suya = QDir().absoluteFilePath(resultados) + u'/' + nombreEnResultados;
        if (auto carpeta = CarpetaPrivada::abrir(suya))
            return {suya, std::move(carpeta)};
        rmdir(QFile::encodeName(suya).constData()); // one that was made just now and keeps no permissions
    }
    if (!CarpetaPrivada::abrir(CarpetaPrivada::enLaCache()))
        return Raiz();
    return {enLaCache(), CarpetaPrivada::abrir(enLaCache())};
}

/// Held only while a folder is made or told from a dead one: between making and locking it looks like left over.
class Turno
{
public:
    explicit Turno(const Descriptor &laRaiz) : raiz(laRaiz) { flock(*raiz, LOCK_EX); }
    Turno(const Turno &) = delete;
    Turno &operator=(const Turno &) = delete;
    ~Turno() { flock(*raiz, LOCK_UN); }

private:
    const Descriptor &raiz;
};

struct Muerta {
    QByteArray nombre;
    Descriptor cerrojo;
};

std::vector<Muerta> muertasDe(const Raiz &raiz)
{
    std::vector<Muerta> muertas;
    const Turno turno(raiz.carpeta);
    for (const auto &nombre : QDir(raiz.ruta).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
        const auto suyo = QFile::encodeName(nombre);
        Descriptor carpeta(openat(*raiz.carpeta, suyo.constData(), soloCarpeta));
        if (carpeta && flock(*carpeta, LOCK_EX | LOCK_NB) == 0)
            muertas.push_back({suyo, std::move(carpeta)});
    }
    return muertas;
}

/// Older versions worked under fixed names in the folder that everybody shares. What they left behind is the owner's
/// data in clear; anything else under those names is let alone.
void quitarNombresDeAntes()
{
    const auto temporal = QFile::encodeName(QDir::tempPath());
    const Descriptor padre(open(temporal.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    for (const char *nombre : {"vellora-extraccion", "vellora-bd"}) {
        struct stat ficha = {};
        const bool suya = padre && fstatat(*padre, nombre, &ficha, AT_SYMLINK_NOFOLLOW) == 0 &&
                          S_ISDIR(ficha.st_mode) && ficha.st_uid == geteuid() &&
                          (ficha.st_mode & (S_IRWXG | S_IRWXO)) == 0;
        if (suya)
            CarpetaPrivada::quitar(*padre, nombre);
    }
}

} // namespace

Resultado<CarpetaDeTrabajo> CarpetaDeTrabajo::nueva(const QString &resultados)
{
    auto raiz = abrirRaiz(resultados);
    const auto fallo = [] {
        return Resultado<CarpetaDeTrabajo>::fallo(
            u"No puedo preparar una carpeta de trabajo privada en %1."_s.arg(CarpetaPrivada::enLaCache()));
    };
    if (!raiz.carpeta)
        return fallo();
    const Turno turno(raiz.carpeta);
    for (;;) {
        const auto nombre = QByteArray::number(QRandomGenerator::system()->generate64(), 36);
        if (mkdirat(*raiz.carpeta, nombre.constData(), S_IRWXU) != 0) {
            if (errno == EEXIST)
                continue;
            return fallo();
        }
        Descriptor carpeta(openat(*raiz.carpeta, nombre.constData(), soloCarpeta));
        if (!carpeta || fchmod(*carpeta, S_IRWXU) != 0)
            return fallo();
        flock(*carpeta, LOCK_SH | LOCK_NB);
        const auto ruta = raiz.ruta + u'/' + QString::fromLatin1(nombre);
        // A descriptor of its own: a lock belongs to an opening of the file, and the turn ends with this one.
        Descriptor padre(openat(*raiz.carpeta, ".", soloCarpeta));
        return CarpetaDeTrabajo(ruta, std::move(padre), std::move(carpeta));
    }
}

void CarpetaDeTrabajo::quitar()
{
    if (ruta_.isEmpty())
        return;
    CarpetaPrivada::quitar(*padre, QFile::encodeName(QFileInfo(ruta_).fileName()));
    const auto raiz = QFileInfo(std::exchange(ruta_, {})).path();
    if (QFileInfo(raiz).fileName() == nombreEnResultados)
        rmdir(QFile::encodeName(raiz).constData()); // stays while another one works in it
}

Descriptor CarpetaDeTrabajo::entrar(const QString &ruta)
{
    Descriptor carpeta(open(QFile::encodeName(ruta).constData(), soloCarpeta));
    struct stat ficha = {};
    const bool suya = carpeta && fstat(*carpeta, &ficha) == 0 && ficha.st_uid == geteuid();
    const bool entrada = suya && (flock(*carpeta, LOCK_SH | LOCK_NB) == 0 || errno != EWOULDBLOCK);
    // It may have been removed between the two.
    return entrada && fstat(*carpeta, &ficha) == 0 && ficha.st_nlink > 0 ? std::move(carpeta) : Descriptor();
}

void CarpetaDeTrabajo::quitarMuertas(const QString &resultados)
{
    if (!resultados.isEmpty() && !QFileInfo(resultados).isDir())
        return;
    const auto raiz = abrirRaiz(resultados);
    if (!raiz.carpeta)
        return;
    for (const auto &una : muertasDe(raiz))
        CarpetaPrivada::quitar(*raiz.carpeta, una.nombre);
    if (resultados.isEmpty())
        quitarNombresDeAntes();
    else if (QFileInfo(raiz.ruta).fileName() == nombreEnResultados)
        rmdir(QFile::encodeName(raiz.ruta).constData());
}

} // namespace vellora
