#include "contenido/FotosDeMuestra.h"

#include <QFile>

namespace simulado
{

static const char *const rutas[] = {
    "/usr/share/backgrounds/mate/nature/Aqua.jpg",
};

QStringList fotosDeMuestra()
{
    QStringList presentes;
    for (const char *ruta : rutas)
        if (QFile::exists(QString::fromUtf8(ruta)))
            presentes << QString::fromUtf8(ruta);
    return presentes;
}

} // namespace simulado
