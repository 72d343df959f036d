#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "engine/roll/BaseDeFotos.h"
#include "engine/roll/BorradoSinCopia.h"
#include "engine/roll/CarreteEnCopia.h"
#include "engine/roll/FinDeBorrado.h"
#include "engine/roll/Rutas.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr std::array carpetasDeLaBiblioteca{carpetaDelCarrete, carpetaDeRetoques, carpetaDeMiniaturas};

/// What is to be emptied, and what of it the owner would miss.
struct Biblioteca {
    std::vector<FicheroDelCarrete> ficheros; ///< the photos first: should it end early, their thumbnails are of use
    Carrete carrete;
    QStringList sinMirar; ///< what the phone did not show, of the thumbnails too
};

bool esDeCarpeta(const QString &ruta, const char *carpeta)
{
    return ruta.startsWith(QString::fromLatin1(carpeta) + u'/');
}

/// Files of the whole library of photos, the app's list left out, and what is never deleted.
Resultado<Biblioteca> leerBiblioteca(Conexiones &conexiones, Avisos &avisar)
{
    auto carrete = leerCarrete(conexiones);
    if (!carrete)
        return Resultado<Biblioteca>::fallo(carrete.motivo());
    Biblioteca biblioteca{carrete->ficheros, *std::move(carrete), {}};
    biblioteca.sinMirar = biblioteca.carrete.problemas;
    QSet<QString> conocidas;
    for (const auto &fichero : biblioteca.ficheros)
        conocidas << fichero.ruta;
    // Of the edits, what the app can make anew is nothing to miss.
    const auto demas =
        recorrer(conexiones, {QString::fromLatin1(carpetaDeRetoques), QString::fromLatin1(carpetaDeMiniaturas)},
                 biblioteca.sinMirar);
    if (!demas)
        return Resultado<Biblioteca>::fallo(demas.motivo());
    for (const auto &[ruta, ficha] : *demas) {
        if (!conocidas.contains(ruta))
            biblioteca.ficheros.push_back({ruta, {}, ficha});
    }
    biblioteca.sinMirar.removeDuplicates();
    for (const auto &problema : biblioteca.sinMirar)
        avisar.linea(problema);
    std::sort(biblioteca.ficheros.begin(), biblioteca.ficheros.end(),
              [](const auto &una, const auto &otra) { return una.ruta < otra.ruta; });
    return biblioteca;
}

qint64 contarEn(const std::vector<FicheroDelCarrete> &ficheros, const char *carpeta)
{
    return std::count_if(ficheros.begin(), ficheros.end(),
                         [&](const auto &fichero) { return esDeCarpeta(fichero.ruta, carpeta); });
}

std::vector<const FicheroDelCarrete *> todos(const std::vector<FicheroDelCarrete> &ficheros)
{
    std::vector<const FicheroDelCarrete *> lista;
    for (const auto &fichero : ficheros)
        lista.push_back(&fichero);
    return lista;
}

/// Folders that the deleted files left empty, the deepest first.
void quitarCarpetasVacias(Afc &afc, const std::vector<FicheroDelCarrete> &ficheros)
{
    QSet<QString> carpetas;
    for (const auto &fichero : ficheros) {
        for (const auto *bajo : carpetasDeLaBiblioteca) {
            const auto principio = QString::fromLatin1(bajo).size() + 1;
            if (!esDeCarpeta(fichero.ruta, bajo))
                continue;
            for (auto corte = fichero.ruta.lastIndexOf(u'/'); corte > principio;
                 corte = fichero.ruta.lastIndexOf(u'/', corte - 1))
                carpetas << fichero.ruta.first(corte);
        }
    }
    auto orden = carpetas.values();
    std::sort(orden.begin(), orden.end(), [](const auto &a, const auto &b) { return a.size() > b.size(); });
    for (const auto &carpeta : orden)
        afc.borrar(carpeta); // one with something in it stays
}

/// Tells what the backup holds of the roll; absent when it holds all of it, else why nothing may go.
std::optional<QString> impedimento(const QStringList &argumentos, Conexiones &conexiones, const Carrete &carrete,
                                   CarreteEnCopia &enCopia, Avisos &avisar)
{
    auto hallado = argumentos.size() > 1 ? buscarEnLaCopia(argumentos[0], argumentos[1], conexiones, carrete, avisar)
                                         : Resultado<CarreteEnCopia>::fallo(u"No se ha dicho dónde está la copia."_s);
    std::optional<QString> motivo;
    if (!hallado)
        motivo = hallado.motivo();
    else if (hallado->faltan > 0)
        motivo =
            u"A la copia de seguridad le faltan %1 archivos de los que hay ahora en el iPhone."_s.arg(hallado->faltan);
    else if (!carrete.problemas.isEmpty())
        motivo =
            u"El iPhone no me ha dejado mirar todas sus carpetas, y no sé si la copia de seguridad lo tiene todo."_s;
    if (hallado)
        enCopia = *std::move(hallado);
    avisar.avisar(u"copia"_s, {{u"bien"_s, !motivo},
                               {u"motivo"_s, motivo.value_or(QString())},
                               {u"telefono"_s, enCopia.telefono},
                               {u"fecha"_s, enCopia.fecha},
                               {u"fotos"_s, enCopia.fotos},
                               {u"faltan"_s, enCopia.faltan},
                               {u"solo_icloud"_s, enCopia.soloICloud},
                               {u"al_quitar_lista"_s, enCopia.alQuitarLaLista}});
    return motivo;
}

/// Ends the emptying of the library: what is left is looked for in all of it.
int acabarBiblioteca(const Borrado &borrado, const CuentaDeBorrado &cuenta, qint64 enCopia, Conexiones &conexiones,
                     Avisos &avisar)
{
    auto &afc = conexiones.primera();
    if (Interrupcion::pedida() || afc.perdido())
        return contarCorte(borrado, cuenta, conexiones, avisar);
    const auto quedan = leerBiblioteca(conexiones, avisar);
    if (!quedan)
        return contarCorte(borrado, cuenta, conexiones, avisar);
    const auto sinMirar = quedan->sinMirar.size();
    const bool nadaQueHacer = borrado.ficheros == 0;
    const bool listaBorrada = sinMirar == 0 && (cuenta.borrados > 0 || nadaQueHacer) && borrarBaseDeFotos(afc);
    const auto fotos = contarEn(quedan->ficheros, carpetaDelCarrete);
    const auto miniaturas = contarEn(quedan->ficheros, carpetaDeMiniaturas);
    avisar.avisar(u"fin"_s, {{u"borrados"_s, cuenta.borrados},
                             {u"quedan_fotos"_s, fotos},
                             {u"quedan_miniaturas"_s, miniaturas},
                             {u"sin_mirar"_s, sinMirar},
                             {u"fotos_en_copia"_s, enCopia},
                             {u"lista_borrada"_s, listaBorrada}});
    return fotos == 0 && miniaturas == 0 && listaBorrada ? 0 : 1;
}

} // namespace

int borrarFotosIPhone(const QStringList &argumentos, Avisos &avisar)
{
    return conElCarrete(argumentos[0], avisar, [&](Conexiones &conexiones, const Carrete &carrete) {
        CarreteEnCopia enCopia;
        const auto motivo = impedimento(argumentos, conexiones, carrete, enCopia, avisar);
        if (!confirmado())
            return contarElPlan(carrete.ficheros, avisar);
        if (motivo)
            return avisar.error(*motivo);
        avisar.total(static_cast<qint64>(carrete.ficheros.size()));
        CuentaDeBorrado cuenta;
        borrarSinCopia(todos(carrete.ficheros), conexiones.primera(), cuenta, avisar);
        return acabarBorrado({static_cast<qint64>(carrete.ficheros.size()), 0, true, false, {}}, cuenta, conexiones,
                             avisar);
    });
}

int borrarBibliotecaFotos(const QStringList &argumentos, Avisos &avisar)
{
    return conElTelefono(argumentos[0], avisar, [&](Conexiones &conexiones) {
        const auto biblioteca = leerBiblioteca(conexiones, avisar);
        if (!biblioteca)
            return avisar.error(biblioteca.motivo());
        CarreteEnCopia enCopia;
        const auto motivo = impedimento(argumentos, conexiones, biblioteca->carrete, enCopia, avisar);
        if (!confirmado())
            return contarElPlan(biblioteca->ficheros, avisar);
        if (motivo)
            return avisar.error(*motivo);
        const auto total = static_cast<qint64>(biblioteca->ficheros.size());
        avisar.total(total);
        CuentaDeBorrado cuenta;
        borrarSinCopia(todos(biblioteca->ficheros), conexiones.primera(), cuenta, avisar);
        quitarCarpetasVacias(conexiones.primera(), biblioteca->ficheros);
        return acabarBiblioteca({total, 0, true, true, {}}, cuenta, enCopia.fotos, conexiones, avisar);
    });
}

} // namespace vellora::motor
