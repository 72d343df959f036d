#include "extraction/Medios.h"

#include "extraction/Extraccion.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

const auto medioHecha = u".vellora-medios"_s;

/// Gives the finished folder its name; the earlier one, if any, goes to the other name in the same moment.
bool ponerEnSuSitio(const QString &nueva, const QString &definitiva)
{
    const auto de = QFile::encodeName(nueva);
    const auto a = QFile::encodeName(definitiva);
    struct stat ficha = {};
    if (lstat(a.constData(), &ficha) != 0)
        return rename(de.constData(), a.constData()) == 0;
    if (renameat2(AT_FDCWD, de.constData(), AT_FDCWD, a.constData(), RENAME_EXCHANGE) == 0)
        return true;
    // A file system that cannot exchange two names.
    const auto vieja = de + "-anterior";
    QDir(QFile::decodeName(vieja)).removeRecursively();
    return rename(a.constData(), vieja.constData()) == 0 && rename(de.constData(), a.constData()) == 0 &&
           QDir(QFile::decodeName(vieja)).removeRecursively();
}

/// What is under a name: a folder, or a link that must not be followed.
void quitar(const QString &ruta)
{
    if (QFileInfo(ruta).isSymLink())
        QFile::remove(ruta);
    else
        QDir(ruta).removeRecursively();
}

} // namespace

qint64 copiarMedios(const QString &origen, CarpetaDeDestino &destino, const QByteArray &dentro,
                    const QByteArray &nombre)
{
    if (!QFileInfo(origen).isDir())
        return 0;
    const auto padre = destino.ruta() + u'/' + QString::fromUtf8(dentro);
    if (QFileInfo(padre).isSymLink() || !QDir().mkpath(padre))
        return 0;
    const auto nueva = padre + u'/' + medioHecha;
    quitar(nueva);
    auto carpeta = CarpetaDeDestino::abrir(nueva);
    if (!carpeta)
        return 0;
    qint64 copiados = 0;
    QDirIterator recorrido(origen, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (recorrido.hasNext()) {
        const auto fichero = recorrido.next();
        copiados += copiarFichero(fichero, *carpeta, fichero.mid(origen.size() + 1)) ? 1 : 0;
    }
    const bool puesta = copiados > 0 && ponerEnSuSitio(nueva, padre + u'/' + QString::fromUtf8(nombre));
    quitar(nueva);
    return puesta ? copiados : 0;
}

} // namespace vellora::Extraccion
