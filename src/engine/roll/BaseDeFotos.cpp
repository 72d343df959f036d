#include "engine/roll/BaseDeFotos.h"

#include "core/BaseDeDatos.h"
#include "core/CarpetaDeTrabajo.h"
#include "engine/roll/NombresDelCarrete.h"

#include <QFile>

#include <array>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr std::array consultas{
    "SELECT ZDIRECTORY, ZFILENAME, ZTRASHEDSTATE, ZHIDDEN FROM ZASSET WHERE ZDIRECTORY > ''",
    "SELECT ZDIRECTORY, ZFILENAME, ZTRASHEDSTATE, ZHIDDEN FROM ZGENERICASSET WHERE ZDIRECTORY > ''"};
// Kind 1505 is an album that somebody shares.
constexpr auto consultaDeAlbumes = "SELECT ZTITLE FROM ZGENERICALBUM WHERE ZKIND = 1505 AND ZTITLE > ''";
constexpr qsizetype bastantesAlbumes = 5;

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

void apuntar(ListaDeFotos &lista, const Fila &fila)
{
    const auto carpeta = fila.texto(0);
    const auto estado = estadoDe(fila);
    const qint64 una = estado == EstadoDeFoto::Papelera ? 0 : 1;
    if (carpeta.startsWith("PhotoData/PhotoCloudSharingData"_L1)) {
        lista.compartidas += una;
    } else if (carpeta.startsWith("PhotoData/Sync"_L1)) {
        lista.sincronizadas += una;
    } else if (const auto sitio = sitioLocal(u'/' + carpeta + u'/' + fila.texto(1)); sitio) {
        (carpeta.startsWith("DCIM"_L1) ? lista.delCarrete : lista.deFuera)[sitio->toStdString()] = estado;
    } else {
        lista.deOtrosSitios += una;
    }
}

} // namespace

std::optional<ListaDeFotos> leerListaDeFotos(Afc &afc)
{
    const auto carpeta = CarpetaDeTrabajo::nueva();
    if (!carpeta)
        return {};
    const auto copia = carpeta->fichero(u"fotos.sqlite"_s);
    if (!traerBase(afc, copia))
        return {};
    const auto base = BaseDeDatos::abrirCopia(copia);
    for (const auto *consulta : consultas) {
        ListaDeFotos lista;
        const auto unaMas = [&lista](const Fila &fila) {
            apuntar(lista, fila);
            return true;
        };
        if (!base || !base->porCadaFila(consulta, unaMas))
            continue;
        // Without their names they are counted all the same.
        base->porCadaFila(consultaDeAlbumes, [&lista](const Fila &fila) {
            lista.albumesCompartidos << fila.texto(0).simplified();
            return lista.albumesCompartidos.size() < bastantesAlbumes;
        });
        return lista;
    }
    return {};
}

std::optional<BaseDeFotos> leerBaseDeFotos(Afc &afc)
{
    auto lista = leerListaDeFotos(afc);
    return lista ? std::optional(std::move(lista->delCarrete)) : std::nullopt;
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
