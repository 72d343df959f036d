#include "app/cli/TrabajoSinVentana.h"
#include "extraction/SacarMisDatos.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// Folder of a phone under "Vellora" that holds a backup of that UDID: the selected phone's, else whichever has one.
QString carpetaDelTelefono(const Modelo &modelo, const QString &udid)
{
    const QFileInfo suya(modelo.carpetaBase());
    for (const auto &otra : suya.dir().entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (!QFileInfo::exists(modelo.carpetaCopias() + u'/' + udid) &&
            QFileInfo::exists(otra.filePath() + u"/Copias de seguridad/"_s + udid))
            return otra.filePath();
    }
    return suya.filePath();
}

} // namespace

int ordenDatos(const OpcionesDeOrden &opciones)
{
    const auto destino = [carpeta = opciones.carpeta](const Modelo &modelo, const QString &udid) {
        return carpeta ? QDir().absoluteFilePath(*carpeta) : carpetaDelTelefono(modelo, udid) + u"/Mis datos"_s;
    };
    const auto empezar = [destino](Modelo &modelo, const QString &udid) {
        const auto copias = carpetaDelTelefono(modelo, udid) + u"/Copias de seguridad"_s;
        sacarMisDatos(modelo.tarea(), udid, copias, destino(modelo, udid));
    };
    return hacerSinVentana(opciones, {u"Datos de la copia de %1"_s, true, empezar, destino},
                           u"Vellora ya está abierta. Saca los datos desde su ventana, o ciérrala."_s);
}

} // namespace vellora
