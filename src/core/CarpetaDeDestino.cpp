#include "core/CarpetaDeDestino.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr qsizetype largoDeNombre = 255; // of ext4, btrfs, xfs and APFS alike
constexpr qsizetype largoDeRuta = 3000;  // leaves room for the folder before it under PATH_MAX
constexpr size_t carpetasALaVez = 128;   // far below the 1,024 descriptors of a process
constexpr int abrirCarpeta = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

} // namespace

Descriptor::~Descriptor()
{
    if (numero >= 0)
        close(numero);
}

Resultado<CarpetaDeDestino> CarpetaDeDestino::abrir(const QString &ruta)
{
    const auto nombre = QFile::encodeName(ruta);
    QDir().mkpath(QFileInfo(ruta).path());
    mkdir(nombre.constData(), S_IRWXU);
    // The folder itself may be a link: that is the owner's own doing.
    Descriptor raiz(open(nombre.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!raiz)
        return Resultado<CarpetaDeDestino>::fallo(u"No puedo escribir en la carpeta %1."_s.arg(ruta));
    return CarpetaDeDestino(ruta, std::move(raiz));
}

bool CarpetaDeDestino::esSegura(QByteArrayView relativa)
{
    if (relativa.size() > largoDeRuta || relativa.contains('\0') || !QUtf8StringView(relativa).isValidUtf8())
        return false;
    const auto partes = relativa.toByteArray().split('/');
    // A working name that is taken would stop the work.
    if (partes.first().startsWith(principioDeTrabajo))
        return false;
    return std::all_of(partes.begin(), partes.end(), [](const QByteArray &parte) {
        return !parte.isEmpty() && parte.size() <= largoDeNombre && parte != "." && parte != "..";
    });
}

Descriptor CarpetaDeDestino::nuevo(int numero) const
{
    desechar(numero);
    return Descriptor(openat(*raiz, nombreDeTrabajo(numero).constData(),
                             O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
}

Descriptor CarpetaDeDestino::seguir(int numero) const
{
    return Descriptor(openat(*raiz, nombreDeTrabajo(numero).constData(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_CLOEXEC));
}

bool CarpetaDeDestino::nuevoEnlaceDe(const QString &fichero, int numero) const
{
    desechar(numero);
    return linkat(AT_FDCWD, QFile::encodeName(fichero).constData(), *raiz, nombreDeTrabajo(numero).constData(), 0) == 0;
}

bool CarpetaDeDestino::colocar(int numero, const QByteArray &relativa)
{
    const auto corte = relativa.lastIndexOf('/');
    const int suya = corte < 0 ? *raiz : carpeta(relativa.first(corte));
    if (suya < 0 ||
        renameat(*raiz, nombreDeTrabajo(numero).constData(), suya, relativa.sliced(corte + 1).constData()) != 0)
        return false;
    // Between two names of the same bytes nothing is renamed, and the working one stays.
    desechar(numero);
    return true;
}

CarpetaDeDestino::Sitio CarpetaDeDestino::colocarSiCabe(int numero, const QByteArray &relativa)
{
    const auto corte = relativa.lastIndexOf('/');
    const int suya = corte < 0 ? *raiz : carpeta(relativa.first(corte));
    if (suya < 0)
        return Sitio::Negado;
    const auto nombre = relativa.sliced(corte + 1);
    const auto deTrabajo = nombreDeTrabajo(numero);
    if (renameat2(*raiz, deTrabajo.constData(), suya, nombre.constData(), RENAME_NOREPLACE) == 0)
        return Sitio::Suyo;
    if (errno == EEXIST)
        return Sitio::Ocupado;
    // Some file systems know no such renaming.
    struct stat estado = {};
    if (errno != EINVAL)
        return Sitio::Negado;
    if (fstatat(suya, nombre.constData(), &estado, AT_SYMLINK_NOFOLLOW) == 0)
        return Sitio::Ocupado;
    return renameat(*raiz, deTrabajo.constData(), suya, nombre.constData()) == 0 ? Sitio::Suyo : Sitio::Negado;
}

Descriptor CarpetaDeDestino::leer(const QByteArray &relativa)
{
    const auto corte = relativa.lastIndexOf('/');
    const int suya = corte < 0 ? *raiz : carpeta(relativa.first(corte));
    return Descriptor(suya < 0 ? -1
                               : openat(suya, relativa.sliced(corte + 1).constData(),
                                        O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
}

bool CarpetaDeDestino::asentar() const
{
    return syncfs(*raiz) == 0;
}

void CarpetaDeDestino::desechar(int numero) const
{
    unlinkat(*raiz, nombreDeTrabajo(numero).constData(), 0);
}

void CarpetaDeDestino::limpiar(const QString &ruta)
{
    QDir carpeta(ruta);
    const auto nombres =
        carpeta.entryList({QString::fromLatin1(principioDeTrabajo) + u'*'}, QDir::Files | QDir::Hidden | QDir::System);
    for (const auto &nombre : nombres)
        carpeta.remove(nombre);
}

std::optional<qint64> CarpetaDeDestino::libres() const
{
    struct statvfs estado = {};
    if (fstatvfs(*raiz, &estado) != 0)
        return {};
    return static_cast<qint64>(estado.f_bavail) * static_cast<qint64>(estado.f_frsize);
}

int CarpetaDeDestino::carpeta(const QByteArray &relativa)
{
    const auto clave = relativa.toStdString();
    if (const auto ya = abiertas.find(clave); ya != abiertas.end())
        return *ya->second;
    if (abiertas.size() >= carpetasALaVez)
        abiertas.clear();
    Descriptor hasta;
    for (const auto &parte : relativa.split('/')) {
        const int desde = hasta ? *hasta : *raiz;
        mkdirat(desde, parte.constData(), S_IRWXU);
        hasta = Descriptor(openat(desde, parte.constData(), abrirCarpeta));
        if (!hasta)
            return -1;
    }
    return *abiertas.emplace(clave, std::move(hasta)).first->second;
}

} // namespace vellora
