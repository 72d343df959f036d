#include "InventarioDeCopia.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QSet>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

/// The protection class of a domain's files: 1 and 2 while unlocked, 4 none, 3 since the first unlocking.
int claseDe(const QString &dominio)
{
    static const QHash<QString, int> especiales{
        {u"HealthDomain"_s, 1}, {u"AppDomainGroup-group.com.apple.notes"_s, 2}, {u"WirelessDomain"_s, 4}};
    return especiales.value(dominio, 3);
}

class Recorrido
{
public:
    explicit Recorrido(QList<EntradaDeCopia> &entradas) : entradas_(entradas) {}

    void recorrer(const QString &dominio, const QString &origen, const QString &prefijo)
    {
        if (!QDir(origen).exists())
            return;
        // The folders above the prefix belong to the domain too.
        QString camino;
        anadir(dominio, camino, origen);
        const QStringList partes = prefijo.split(u'/', Qt::SkipEmptyParts);
        for (const QString &parte : partes) {
            camino += camino.isEmpty() ? parte : u'/' + parte;
            anadir(dominio, camino, origen);
        }
        bajar(dominio, origen, camino);
    }

private:
    void bajar(const QString &dominio, const QString &origen, const QString &prefijo)
    {
        const QStringList nombres =
            QDir(origen).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        for (const QString &nombre : nombres) {
            const QString ruta = prefijo.isEmpty() ? nombre : prefijo + u'/' + nombre;
            const QString completa = origen + u'/' + nombre;
            if (anadir(dominio, ruta, completa))
                bajar(dominio, completa, ruta);
        }
    }

    /// True when it is a folder to go down into.
    bool anadir(const QString &dominio, const QString &ruta, const QString &origen)
    {
        EntradaDeCopia entrada;
        entrada.origen = QFile::encodeName(origen);
        struct stat ficha {
        };
        if (lstat(entrada.origen.constData(), &ficha) != 0)
            return false;
        const bool esCarpeta = S_ISDIR(ficha.st_mode);
        if (!esCarpeta && !S_ISREG(ficha.st_mode))
            return false;
        const QByteArray clave = dominio.toUtf8() + '-' + ruta.toUtf8();
        entrada.id = QCryptographicHash::hash(clave, QCryptographicHash::Sha1).toHex();
        if (vistos_.contains(entrada.id))
            return esCarpeta;
        vistos_.insert(entrada.id);
        entrada.dominio = dominio;
        entrada.ruta = ruta;
        entrada.tipo = esCarpeta ? EntradaDeCopia::Carpeta : EntradaDeCopia::Fichero;
        entrada.tamano = esCarpeta ? 0 : ficha.st_size;
        entrada.fecha = ficha.st_mtim.tv_sec;
        entrada.inodo = ficha.st_ino;
        entrada.modo = ficha.st_mode;
        entrada.clase = esCarpeta ? 0 : claseDe(dominio);
        entradas_.append(entrada);
        return esCarpeta;
    }

    QList<EntradaDeCopia> &entradas_;
    QSet<QByteArray> vistos_;
};

} // namespace

QString EntradaDeCopia::nombreEnCopia() const
{
    const QString entero = QString::fromLatin1(id);
    return entero.left(2) + u'/' + entero;
}

QList<EntradaDeCopia> inventariar(const QString &carpetaDelTelefono)
{
    QList<EntradaDeCopia> entradas;
    Recorrido recorrido(entradas);
    const QString dominios = carpetaDelTelefono + "/dominios"_L1;
    const QStringList nombres = QDir(dominios).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &nombre : nombres)
        recorrido.recorrer(nombre, dominios + u'/' + nombre, {});
    const QString media = carpetaDelTelefono + "/media"_L1;
    recorrido.recorrer(u"CameraRollDomain"_s, media + "/DCIM"_L1, u"Media/DCIM"_s);
    recorrido.recorrer(u"CameraRollDomain"_s, media + "/PhotoData"_L1, u"Media/PhotoData"_s);
    recorrido.recorrer(u"MediaDomain"_s, media + "/Recordings"_L1, u"Media/Recordings"_s);
    return entradas;
}

} // namespace simulado
