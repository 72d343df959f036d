#include "RestauradorDeCopia.h"

#include "Cifra.h"
#include "Plist.h"
#include "Telefono.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

bool caminoInocente(const QString &dominio, const QString &ruta)
{
    const QStringList partes = ruta.split(u'/');
    return !dominio.isEmpty() && !dominio.contains(u'/') && !dominio.startsWith(u'.') && !ruta.startsWith(u'/') &&
           !partes.contains(u".."_s) && !ruta.contains(QChar::Null);
}

QVariantMap leerFichero(const QString &ruta)
{
    QFile fichero(ruta);
    return leerPlist(fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray()).value_or(QVariant()).toMap();
}

} // namespace

RestauradorDeCopia::RestauradorDeCopia(Telefono &telefono, EnlaceDispositivo &enlace, const QString &origen,
                                       const QString &clave)
    : telefono_(telefono)
    , enlace_(enlace)
    , origen_(origen)
    , clave_(clave)
    , nueva_(telefono.carpeta() + "/restaurado.parte"_L1)
{
}

std::optional<Desenlace> RestauradorDeCopia::restaurar()
{
    constexpr qsizetype porTanda = 200;
    const auto lectura = leerCopia();
    if (!lectura || lectura->codigo != 0)
        return lectura;
    for (qsizetype i = 0; i < orden_.size(); i += porTanda) {
        const double progreso = 5.0 + 90.0 * double(i) / double(orden_.size());
        const auto tanda = traer(orden_.mid(i, porTanda), progreso);
        if (!tanda || tanda->codigo != 0)
            return tanda;
    }
    if (recibidos_ != orden_.size())
        return errorDeCopia(205, u"Missing files in backup"_s);
    const QString definitiva = telefono_.carpeta() + "/restaurado"_L1;
    QDir(definitiva).removeRecursively();
    if (!QDir().rename(nueva_, definitiva))
        return errorDeCopia(1);
    telefono_.averias().contarEvento(u"restaurado %1 ficheros"_s.arg(recibidos_));
    return Desenlace{};
}

std::optional<Desenlace> RestauradorDeCopia::leerCopia()
{
    const auto abrir = [this](const QString &ruta) -> QIODevice * {
        abierto_ = std::make_unique<QFile>(temporal_.filePath(ruta.section(u'/', -1)));
        return abierto_->open(QIODevice::WriteOnly) ? abierto_.get() : nullptr;
    };
    QStringList rutas;
    for (const QString &nombre : {u"Status.plist"_s, u"Manifest.plist"_s, u"Manifest.db"_s})
        rutas.append(origen_ + u'/' + nombre);
    const auto respuesta = enlace_.descargar(rutas, 1.0, abrir);
    abierto_.reset();
    if (!respuesta)
        return {};
    if (respuesta->codigo != 0)
        return errorDeCopia(205);
    if (const auto negativa = abrirLlaves())
        return negativa;
    QDir(nueva_).removeRecursively();
    QDir().mkpath(nueva_);
    const bool leido = leerManifiesto(temporal_.filePath(u"Manifest.db"_s),
                                      [this](const FilaDeManifiesto &fila) { disparatado_ |= !apuntar(fila); });
    return leido && !disparatado_ ? Desenlace{} : errorDeCopia(205);
}

std::optional<Desenlace> RestauradorDeCopia::abrirLlaves()
{
    const QVariantMap manifiesto = leerFichero(temporal_.filePath(u"Manifest.plist"_s));
    if (!manifiesto[u"IsEncrypted"_s].toBool())
        return {};
    // The password of the backup, whatever this phone's own is now.
    llaves_ = LlavesDeCopia::abrir(manifiesto[u"BackupKeyBag"_s].toByteArray(), clave_);
    if (!llaves_)
        return errorDeCopia(207);
    const auto clave = llaves_->desenvolver(manifiesto[u"ManifestKey"_s].toByteArray());
    return clave && descifrarEnSitio(temporal_.filePath(u"Manifest.db"_s), *clave) ? std::nullopt
                                                                                   : std::optional(errorDeCopia(205));
}

bool RestauradorDeCopia::apuntar(const FilaDeManifiesto &fila)
{
    if (!caminoInocente(fila.dominio, fila.ruta))
        return false;
    const QString destino = nueva_ + u'/' + fila.dominio + u'/' + fila.ruta;
    if (fila.tipo == EntradaDeCopia::Carpeta)
        return QDir().mkpath(destino);
    if (fila.tipo != EntradaDeCopia::Fichero)
        return true;
    const QString enCopia = origen_ + u'/' + QString::fromLatin1(fila.id.left(2) + '/' + fila.id);
    const auto clave = llaves_ ? llaves_->desenvolver(fila.clave) : QByteArray();
    if (!clave)
        return false;
    pedidos_.insert(enCopia, {destino, fila.tamano, fila.fecha, *clave});
    orden_.append(enCopia);
    return true;
}

std::optional<Desenlace> RestauradorDeCopia::traer(const QStringList &rutas, double progreso)
{
    if (telefono_.espacioLibre() <= 0)
        return errorDeCopia(105, u"Insufficient free space on device"_s);
    bool enteros = true;
    const auto respuesta = enlace_.descargar(rutas, progreso, [&](const QString &ruta) {
        enteros &= cerrarDestino();
        return abrirDestino(ruta);
    });
    enteros &= cerrarDestino();
    if (!respuesta)
        return {};
    return respuesta->codigo == 0 && enteros ? Desenlace{} : errorDeCopia(205, u"Missing files in backup"_s);
}

QIODevice *RestauradorDeCopia::abrirDestino(const QString &ruta)
{
    const auto it = pedidos_.constFind(ruta);
    if (it == pedidos_.cend())
        return nullptr;
    enCurso_ = *it;
    QDir().mkpath(QFileInfo(enCurso_.destino).path());
    abierto_ = std::make_unique<QFile>(enCurso_.destino);
    return abierto_->open(QIODevice::WriteOnly) ? abierto_.get() : nullptr;
}

bool RestauradorDeCopia::cerrarDestino()
{
    if (!abierto_)
        return true;
    abierto_->close();
    const bool abrible = enCurso_.clave.isEmpty() || descifrarEnSitio(enCurso_.destino, enCurso_.clave);
    const bool entero = abrible && QFileInfo(enCurso_.destino).size() == enCurso_.tamano;
    if (!abierto_->open(QIODevice::ReadWrite))
        return false;
    abierto_->setFileTime(QDateTime::fromSecsSinceEpoch(enCurso_.fecha), QFileDevice::FileModificationTime);
    abierto_.reset();
    recibidos_ += entero ? 1 : 0;
    return entero;
}

} // namespace simulado
