#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "engine/roll/BorradoSinCopia.h"
#include "engine/roll/FinDeBorrado.h"
#include "engine/roll/Rutas.h"

#include <QSet>

#include <map>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

/// What the owner chose, by what the question before it said of each.
struct Elegidas {
    std::vector<FotoEntera> conCopia;                ///< announced as copied: they go after the proof
    std::vector<const FicheroDelCarrete *> sinCopia; ///< announced as lost
};

Elegidas repartir(const std::vector<FicheroDelCarrete> &ficheros, const QStringList &anunciadas)
{
    const QSet<QString> perdidas(anunciadas.begin(), anunciadas.end());
    std::map<QByteArray, FotoEntera> fotos;
    Elegidas elegidas;
    for (const auto &fichero : ficheros) {
        if (perdidas.contains(fichero.ruta))
            elegidas.sinCopia.push_back(&fichero);
        else
            fotos[elementoDe(fichero.relativa)].push_back(&fichero);
    }
    for (auto &[clave, foto] : fotos)
        elegidas.conCopia.push_back(std::move(foto));
    return elegidas;
}

int borrar(const Elegidas &elegidas, const RutasBuscadas &buscadas, const QStringList &argumentos,
           Conexiones &conexiones, bool conLaListaDeFotos, Avisos &avisar)
{
    const auto total = static_cast<qint64>(buscadas.ficheros.size()) + buscadas.negados;
    avisar.total(total);
    CuentaDeBorrado cuenta;
    cuenta.negados = buscadas.negados;
    const auto avance = [&](const FicheroDelCarrete &fichero) {
        contarElCamino(cuenta, fichero.ruta, avisar);
    };
    auto copiadas = Copiadas::leer(argumentos[2], argumentos[0]);
    const auto parada =
        BorradoProbado(argumentos[2], copiadas, conexiones, avisar, cuenta).borrar(elegidas.conCopia, avance);
    if (!parada)
        borrarSinCopia(elegidas.sinCopia, conexiones.primera(), cuenta, avisar);
    return acabarBorrado({total, 0, true, conLaListaDeFotos, parada}, cuenta, conexiones, avisar);
}

int borrarLista(const QStringList &argumentos, Avisos &avisar, bool conLaListaDeFotos)
{
    const auto rutas = leerRutas(argumentos[1]);
    const auto sinCopia = argumentos.size() > 3 ? leerRutas(argumentos[3]) : Resultado(QStringList());
    if (!rutas || !sinCopia)
        return avisar.error(rutas ? sinCopia.motivo() : rutas.motivo());
    return conElTelefono(argumentos[0], avisar, [&](Conexiones &conexiones) {
        const auto buscadas = buscarRutas(conexiones, *rutas);
        const auto elegidas = repartir(buscadas.ficheros, *sinCopia);
        if (!confirmado())
            return contarElPlan(buscadas.ficheros, avisar);
        for (const auto &[ruta, motivo] : buscadas.perdidos)
            avisar.linea(motivo);
        return borrar(elegidas, buscadas, argumentos, conexiones, conLaListaDeFotos, avisar);
    });
}

} // namespace

int borrarElegidas(const QStringList &argumentos, Avisos &avisar)
{
    return borrarLista(argumentos, avisar, false);
}

int borrarElegidasDeVerdad(const QStringList &argumentos, Avisos &avisar)
{
    return borrarLista(argumentos, avisar, true);
}

} // namespace vellora::motor
