#include "images/ImagenReducida.h"

#include "images/LectorDeImagenes.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QLibrary>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// The part that knows HEIC and video; the program and its engine have it at different heights of their folder. Null
/// when it is not there.
LeerImagen lector()
{
    static const auto suyo = [] {
        const auto carpeta = QFileInfo(u"/proc/self/exe"_s).canonicalPath();
        for (const auto &sitio : {u"/../PlugIns"_s, u"/../../PlugIns"_s}) {
            QLibrary parte(carpeta + sitio + u"/libvellora_imagenes.so"_s);
            if (const auto leer = reinterpret_cast<LeerImagen>(parte.resolve("vellora_leer_imagen")))
                return leer;
        }
        return LeerImagen(nullptr);
    }();
    return suyo;
}

} // namespace

QImage imagenReducida(const QString &fichero, int lado)
{
    QImageReader deQt(fichero);
    deQt.setDecideFormatFromContent(true);
    if (deQt.canRead()) {
        deQt.setAutoTransform(true);
        const auto suyo = deQt.size();
        const QSize cuadro(lado, lado);
        if (suyo.isValid() && (suyo.width() > lado || suyo.height() > lado))
            deQt.setScaledSize(suyo.scaled(cuadro, Qt::KeepAspectRatio).expandedTo({1, 1}));
        return deQt.read();
    }
    QImage imagen;
    const auto leer = lector();
    return leer != nullptr && leer(QFile::encodeName(fichero).constData(), lado, &imagen) ? imagen : QImage();
}

bool guardarMiniatura(const QImage &imagen, const QString &fichero)
{
    constexpr int calidad = 82;
    QSaveFile escrito(fichero);
    return !imagen.isNull() && escrito.open(QIODevice::WriteOnly) && imagen.save(&escrito, "JPEG", calidad) &&
           escrito.commit();
}

QString nombreDeMiniatura(const QString &udid, const QString &ruta, qint64 bytes, qint64 modificado)
{
    const auto todo = u"%1\n%2\n%3\n%4"_s.arg(udid, ruta).arg(bytes).arg(modificado).toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(todo, QCryptographicHash::Sha1).toHex()) + u".jpg"_s;
}

} // namespace vellora
