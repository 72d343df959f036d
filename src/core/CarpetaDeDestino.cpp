#include "core/CarpetaDeDestino.h"

#include "core/Vuelta.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
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

CarpetaDeDestino::CarpetaDeDestino(QString laRuta, Descriptor laRaiz)
    : ruta_(std::move(laRuta))
    , trabajos(principioDeTrabajo + QByteArray::number(QRandomGenerator::system()->generate64(), 16) + '-')
    , raiz(std::move(laRaiz))
{
    // Whether it can be had or not: only the cleaning asks for it.
    flock(*raiz, LOCK_SH | LOCK_NB);
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
    const auto renombrar = [&] {
        return renameat(*raiz, nombreDeTrabajo(numero).constData(), suya, relativa.sliced(corte + 1).constData()) == 0;
    };
    if (suya < 0 || !Vuelta::publicar(renombrar))
        return false;
    // Between two names of the same bytes nothing is renamed, and the working one stays.
    desechar(numero);
    return true;
}

CarpetaDeDestino::Sitio CarpetaDeDestino::colocarSiCabe(int numero, const QByteArray &relativa)
{
    const auto corte = relativa.lastIndexOf('/');
    const int suya = corte < 0 ? *raiz : carpeta(relativa.first(corte));
    const auto nombre = relativa.sliced(corte + 1);
    const auto deTrabajo = nombreDeTrabajo(numero);
    auto sitio = Sitio::Negado;
    const auto renombrar = [&] {
        if (renameat2(*raiz, deTrabajo.constData(), suya, nombre.constData(), RENAME_NOREPLACE) == 0)
            sitio = Sitio::Suyo;
        else if (errno == EEXIST)
            sitio = Sitio::Ocupado;
        else if (errno == EINVAL)
            // A name that is not valid there, or a disk that knows no such renaming (exFAT and NTFS by FUSE, NFS).
            sitio = colocarSinCambiarNombre(numero, suya, nombre);
        return sitio == Sitio::Suyo;
    };
    if (suya >= 0)
        Vuelta::publicar(renombrar);
    return sitio;
}

CarpetaDeDestino::Sitio CarpetaDeDestino::colocarSinCambiarNombre(int numero, int suya, const QByteArray &nombre) const
{
    const auto deTrabajo = nombreDeTrabajo(numero);
    const auto fracaso = [] {
        return errno == EEXIST ? Sitio::Ocupado : Sitio::Negado;
    };
    if (linkat(*raiz, deTrabajo.constData(), suya, nombre.constData(), 0) == 0) {
        desechar(numero);
        return Sitio::Suyo;
    }
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS)
        return fracaso();
    // Without links either: the name is taken first, empty, so that it is nobody else's.
    const Descriptor reserva(
        openat(suya, nombre.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!reserva)
        return fracaso();
    if (renameat(*raiz, deTrabajo.constData(), suya, nombre.constData()) == 0)
        return Sitio::Suyo;
    const int error = errno;
    unlinkat(suya, nombre.constData(), 0);
    errno = error;
    return Sitio::Negado;
}

Descriptor CarpetaDeDestino::releer(int numero) const
{
    return Descriptor(openat(*raiz, nombreDeTrabajo(numero).constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
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
    constexpr qint64 unDia = 24LL * 3600;
    const Descriptor raiz(open(QFile::encodeName(ruta).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!raiz)
        return;
    const bool nadieEscribe = flock(*raiz, LOCK_EX | LOCK_NB) == 0;
    if (!nadieEscribe && errno == EWOULDBLOCK)
        return;
    QDir carpeta(ruta);
    const auto dejados = carpeta.entryInfoList({QString::fromLatin1(principioDeTrabajo) + u'*'},
                                               QDir::Files | QDir::Hidden | QDir::System);
    for (const auto &dejado : dejados) {
        if (nadieEscribe || dejado.lastModified().secsTo(QDateTime::currentDateTime()) > unDia)
            carpeta.remove(dejado.fileName());
    }
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
