#include "backups/CopiasAnteriores.h"

#include "backups/CarpetaDeCopias.h"
#include "backups/Catalogo.h"
#include "core/CarpetaPrivada.h"
#include "core/Preferencias.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::CopiasAnteriores
{

namespace
{

// Under this name it is no backup any more, whatever is left of it.
constexpr auto queSeVa = ".vellora-fuera";
constexpr int segundosDeEspera = 2;
constexpr int maximo = 9;
const auto claveCuantas = u"copiasAnteriores"_s;

/// An empty folder for one more, named by the backup's date; its name, empty when it cannot be made.
QByteArray nuevaFecha(int anteriores, const QDateTime &fecha)
{
    const auto nombre = fecha.toLocalTime().toString(u"yyyy-MM-dd HH.mm.ss"_s);
    for (int vez = 1; vez < 100; ++vez) {
        auto este = vez == 1 ? nombre.toUtf8() : u"%1 (%2)"_s.arg(nombre).arg(vez).toUtf8();
        if (mkdirat(anteriores, este.constData(), S_IRWXU) == 0)
            return este;
        if (errno != EEXIST)
            break;
    }
    return {};
}

/// Moves the folder `udid` of `padre` to the earlier ones.
bool pasar(int carpeta, int padre, const QByteArray &udid, const QString &ruta)
{
    const auto nombre = nombreDeLaCarpeta().toUtf8();
    mkdirat(carpeta, nombre.constData(), S_IRWXU);
    const auto anteriores = CarpetaDeCopias::dentro(carpeta, nombre);
    if (!anteriores)
        return false;
    const auto fecha = nuevaFecha(*anteriores, Catalogo::fechaDe(ruta).value_or(QDateTime::currentDateTime()));
    const auto suya = fecha.isEmpty() ? Descriptor() : CarpetaDeCopias::dentro(*anteriores, fecha);
    if (!suya)
        return false;
    const bool bien = renameat(padre, udid.constData(), *suya, udid.constData()) == 0;
    if (!bien)
        unlinkat(*anteriores, fecha.constData(), AT_REMOVEDIR);
    fsync(*suya);
    fsync(*anteriores);
    return bien;
}

/// Removes the folder `udid` of a dated one, and that one.
bool quitarDe(int anteriores, const QByteArray &fecha, const QByteArray &udid)
{
    const auto suya = CarpetaDeCopias::dentro(anteriores, fecha);
    if (!suya)
        return false;
    if (!udid.isEmpty() && renameat(*suya, udid.constData(), *suya, queSeVa) != 0 && errno != ENOENT)
        return false;
    struct stat ficha = {};
    const bool queda = fstatat(*suya, queSeVa, &ficha, AT_SYMLINK_NOFOLLOW) == 0;
    const bool bien = !queda || CarpetaPrivada::quitar(*suya, queSeVa);
    unlinkat(anteriores, fecha.constData(), AT_REMOVEDIR); // only when it is empty
    return bien;
}

Descriptor abrirLaCarpeta(const QString &copias)
{
    return Descriptor(open(QFile::encodeName(copias + u'/' + nombreDeLaCarpeta()).constData(),
                           O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

} // namespace

const QString &nombreDeLaCarpeta()
{
    static const auto nombre = u"Copias anteriores"_s;
    return nombre;
}

QString carpetaQueSeToma(const QString &carpetaCopias)
{
    const QFileInfo donde(QFileInfo(carpetaCopias).path());
    return donde.fileName() == nombreDeLaCarpeta() ? donde.path() : carpetaCopias;
}

int cuantas()
{
    bool numero = false;
    const int guardadas = Preferencias::texto(claveCuantas).toInt(&numero);
    return numero ? std::clamp(guardadas, 0, maximo) : 1;
}

void ponCuantas(int cuantas)
{
    Preferencias::ponTexto(claveCuantas, QString::number(std::clamp(cuantas, 0, maximo)));
}

QList<Anterior> listar(const QString &copias, const QString &udid, bool contando)
{
    QList<Anterior> lista;
    QDirIterator fechas(copias + u'/' + nombreDeLaCarpeta(), QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    while (fechas.hasNext()) {
        Anterior una{fechas.next(), udid, {}, false, false, 0};
        const auto estado = Catalogo::estadoDe(una.carpeta());
        if (QFileInfo(una.carpeta()).isSymLink() || estado.clase == Catalogo::Clase::NoHay)
            continue;
        una.fecha = estado.fecha.value_or(QFileInfo(una.carpeta()).lastModified());
        una.entera = estado.clase == Catalogo::Clase::Entera;
        una.acabada = estado.clase != Catalogo::Clase::Inacabada;
        if (contando)
            una.bytes = CarpetaDeCopias::bytesSoloDe(una.carpeta());
        lista << una;
    }
    std::sort(lista.begin(), lista.end(), [](const Anterior &una, const Anterior &otra) {
        return std::pair(una.fecha, una.carpetaCopias) > std::pair(otra.fecha, otra.carpetaCopias);
    });
    return lista;
}

bool retirar(int carpeta, const QString &copias, const QString &udid)
{
    const auto nombre = QFile::encodeName(udid);
    const auto vieja = CarpetaDeCopias::dentro(carpeta, nombre);
    if (!vieja)
        return errno == ENOENT;
    // Older versions made the backup of a phone that was plugged in inside the one that it had.
    const auto ruta = copias + u'/' + udid;
    if (QFile::exists(ruta + u'/' + udid + u"/Manifest.db"_s) && !pasar(carpeta, *vieja, nombre, ruta + u'/' + udid))
        return false;
    return pasar(carpeta, carpeta, nombre, ruta);
}

void limpiar(const QString &copias)
{
    const auto anteriores = abrirLaCarpeta(copias);
    QDirIterator fechas(copias + u'/' + nombreDeLaCarpeta(), QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    while (anteriores && fechas.hasNext())
        quitarDe(*anteriores, QFile::encodeName(QFileInfo(fechas.next()).fileName()), {});
}

void podar(const QString &copias, const QString &udid, int cuantas, bool conservarLaBuena)
{
    limpiar(copias);
    const auto anteriores = abrirLaCarpeta(copias);
    int quedan = 0;
    bool hayBuena = !conservarLaBuena;
    for (const auto &una : listar(copias, udid)) {
        const bool cabe = una.acabada && ++quedan <= cuantas;
        const bool esLaBuena = !hayBuena && una.entera;
        hayBuena = hayBuena || una.entera;
        if (anteriores && !cabe && !esLaBuena)
            quitarDe(*anteriores, QFile::encodeName(QFileInfo(una.carpetaCopias).fileName()), QFile::encodeName(udid));
    }
}

bool quitar(const QString &copias, const Anterior &cual)
{
    const auto carpeta = CarpetaDeCopias::tomar(copias, segundosDeEspera);
    const auto anteriores = carpeta ? CarpetaDeCopias::dentro(*carpeta, nombreDeLaCarpeta().toUtf8()) : Descriptor();
    return anteriores && quitarDe(*anteriores, QFile::encodeName(QFileInfo(cual.carpetaCopias).fileName()),
                                  QFile::encodeName(cual.udid));
}

} // namespace vellora::CopiasAnteriores
