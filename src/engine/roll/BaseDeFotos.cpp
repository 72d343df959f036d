#include "engine/roll/BaseDeFotos.h"

#include "core/BaseDeDatos.h"
#include "core/CarpetaDeTrabajo.h"

#include <QFile>

#include <array>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr std::array consultas{
    "SELECT ZDIRECTORY, ZFILENAME, ZTRASHEDSTATE, ZHIDDEN FROM ZASSET WHERE ZDIRECTORY LIKE 'DCIM/%'",
    "SELECT ZDIRECTORY, ZFILENAME, ZTRASHEDSTATE, ZHIDDEN FROM ZGENERICASSET WHERE ZDIRECTORY LIKE 'DCIM/%'"};

const auto nombreDeLaBase = u"/PhotoData/Photos.sqlite"_s;
constexpr std::array colas{"", "-wal", "-shm"};

bool traer(Afc &afc, const QString &ruta, const QString &a)
{
    QFile copia(a);
    return copia.open(QIODevice::WriteOnly) && afc.leer(ruta, [&copia](QByteArrayView trozo) {
        return copia.write(trozo.data(), trozo.size()) == trozo.size();
    }) && copia.flush();
}

/// The list and its last changes. The phone may write to it meanwhile: then it is read again.
bool traerBase(Afc &afc, const QString &a)
{
    constexpr int intentos = 3;
    for (int i = 0; i < intentos && !afc.perdido(); ++i) {
        const auto antes = afc.ficha(nombreDeLaBase);
        if (!antes || !traer(afc, nombreDeLaBase, a))
            continue;
        const auto cambios = afc.ficha(nombreDeLaBase + u"-wal"_s);
        QFile::remove(a + u"-wal"_s);
        const bool conCambios = !cambios || traer(afc, nombreDeLaBase + u"-wal"_s, a + u"-wal"_s);
        const auto despues = afc.ficha(nombreDeLaBase);
        if (conCambios && despues && *despues == *antes)
            return true;
    }
    return false;
}

EstadoDeFoto estadoDe(const Fila &fila)
{
    constexpr int papelera = 2;
    constexpr int oculta = 3;
    if (fila.entero(papelera) != 0)
        return EstadoDeFoto::Papelera;
    return fila.entero(oculta) != 0 ? EstadoDeFoto::Oculta : EstadoDeFoto::Visible;
}

} // namespace

std::optional<BaseDeFotos> leerBaseDeFotos(Afc &afc)
{
    const auto carpeta = CarpetaDeTrabajo::nueva();
    if (!carpeta)
        return {};
    const auto copia = carpeta->fichero(u"fotos.sqlite"_s);
    if (!traerBase(afc, copia))
        return {};
    const auto base = BaseDeDatos::abrirCopia(copia);
    for (const auto *consulta : consultas) {
        BaseDeFotos fotos;
        const auto apuntar = [&fotos](const Fila &fila) {
            const auto carpetaEnElCarrete = fila.texto(0).sliced(qstrlen("DCIM/"));
            fotos[(carpetaEnElCarrete + u'/' + fila.texto(1)).toStdString()] = estadoDe(fila);
            return true;
        };
        if (base && base->porCadaFila(consulta, apuntar))
            return fotos;
    }
    return {};
}

bool borrarBaseDeFotos(Afc &afc)
{
    bool nadaQueda = true;
    for (const auto *cola : colas) {
        const auto ruta = nombreDeLaBase + QString::fromLatin1(cola);
        nadaQueda = (!afc.borrar(ruta) || afc.faltaba()) && nadaQueda;
    }
    return nadaQueda;
}

} // namespace vellora::motor
