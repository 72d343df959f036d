#include "extraction/Medios.h"

#include "core/CarpetaPrivada.h"
#include "core/EscritorDeTexto.h"
#include "core/Vuelta.h"
#include "extraction/Extraccion.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstring>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

constexpr int numero = 0; // of the working file
constexpr int mismosNombres = 1000;

/// What a file of the results is to the one that should come to its place.
enum class Parecido { Falta, Igual, SuPrincipio, LoContiene, Otro };

/// Bytes decide: length and date stay when a disk gives other bytes back. Compares as far as the shorter one goes;
/// false too when one cannot be read.
bool mismoPrincipio(QFile &una, QFile &otra)
{
    QByteArray tramo(1 << 18, Qt::Uninitialized);
    QByteArray suyo(1 << 18, Qt::Uninitialized);
    for (auto quedan = std::min(una.size(), otra.size()); quedan > 0 && Vuelta::seguimos();) {
        const auto cuantos = std::min<qint64>(quedan, tramo.size());
        if (una.read(tramo.data(), cuantos) != cuantos || otra.read(suyo.data(), cuantos) != cuantos ||
            std::memcmp(tramo.constData(), suyo.constData(), static_cast<size_t>(cuantos)) != 0)
            return false;
        quedan -= cuantos;
    }
    return Vuelta::seguimos();
}

Parecido comparar(const QString &origen, CarpetaDeDestino &destino, const QByteArray &relativa)
{
    const auto descriptor = destino.leer(relativa);
    if (!descriptor)
        return Parecido::Falta;
    QFile vieja;
    QFile otra(origen);
    if (!vieja.open(*descriptor, QIODevice::ReadOnly) || !otra.open(QIODevice::ReadOnly) ||
        !mismoPrincipio(vieja, otra))
        return Parecido::Otro;
    if (vieja.size() == otra.size())
        return Parecido::Igual;
    return vieja.size() < otra.size() ? Parecido::SuPrincipio : Parecido::LoContiene;
}

/// The bytes of a file under the working name.
bool preparar(const QString &origen, CarpetaDeDestino &destino)
{
    if (destino.nuevoEnlaceDe(origen, numero))
        return true;
    QFile entrada(origen);
    const auto descriptor = destino.nuevo(numero);
    QFile salida;
    if (!descriptor || !entrada.open(QIODevice::ReadOnly) || !salida.open(*descriptor, QIODevice::WriteOnly))
        return false;
    QByteArray tramo(1 << 20, Qt::Uninitialized);
    qint64 leidos = 0;
    while (Vuelta::seguimos() && (leidos = entrada.read(tramo.data(), tramo.size())) > 0) {
        if (salida.write(tramo.constData(), leidos) != leidos)
            break;
    }
    // The owner knows a recording by its day.
    return leidos == 0 && salida.flush() && fdatasync(*descriptor) == 0 &&
           salida.setFileTime(entrada.fileTime(QFile::FileModificationTime), QFile::FileModificationTime);
}

/// The n-th name for a file: "NAME.jpg", "NAME (2).jpg"…
QByteArray nombreNumero(const QByteArray &relativa, int cual)
{
    return cual == 1 ? relativa : EscritorDeTexto::conCola(relativa, '(' + QByteArray::number(cual) + ')');
}

bool ponerEnSuSitio(const QString &origen, CarpetaDeDestino &destino, const QByteArray &relativa)
{
    using Sitio = CarpetaDeDestino::Sitio;
    for (int cual = 1; cual <= mismosNombres && Vuelta::seguimos(); ++cual) {
        const auto nombre = nombreNumero(relativa, cual);
        const auto parecido = comparar(origen, destino, nombre);
        if (parecido == Parecido::Igual || parecido == Parecido::LoContiene)
            return true;
        if (parecido == Parecido::Otro)
            continue;
        if (!preparar(origen, destino))
            return false;
        if (parecido == Parecido::SuPrincipio)
            return destino.colocar(numero, nombre);
        if (const auto sitio = destino.colocarSiCabe(numero, nombre); sitio != Sitio::Ocupado)
            return sitio == Sitio::Suyo;
    }
    return false;
}

} // namespace

bool copiarFichero(const QString &origen, CarpetaDeDestino &destino, const QString &relativa)
{
    const auto nombre = relativa.toUtf8();
    const bool bien = ponerEnSuSitio(origen, destino, nombre);
    destino.desechar(numero);
    if (!bien)
        Vuelta::sinEscribir(nombre);
    return bien;
}

qint64 copiarMedios(const QString &origen, CarpetaDeDestino &destino, const QString &dentro)
{
    if (!QFileInfo(origen).isDir())
        return 0;
    // A link in its place is not followed; what it leads to is let alone.
    if (const QFileInfo sitio(destino.ruta() + u'/' + dentro); sitio.isSymLink())
        QFile::remove(sitio.filePath());
    // Where older versions made a new folder before it took the place of the old one.
    CarpetaPrivada::quitar(QFileInfo(destino.ruta() + u'/' + dentro).path() + u"/.vellora-medios"_s);
    qint64 copiados = 0;
    QDirIterator recorrido(origen, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (recorrido.hasNext() && Vuelta::seguimos()) {
        const auto fichero = recorrido.next();
        copiados += copiarFichero(fichero, destino, dentro + fichero.mid(origen.size())) ? 1 : 0;
    }
    return copiados;
}

} // namespace vellora::Extraccion
