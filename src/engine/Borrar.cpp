#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "engine/roll/BaseDeFotos.h"
#include "engine/roll/Rutas.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

/// Paths of the phone with their sizes.
using Ficheros = std::vector<std::pair<QString, qint64>>;

struct CuentaDeBorrados {
    qint64 borrados = 0;
    qint64 liberados = 0;
    qint64 siguenAhi = 0;
};

QString nombreDe(const QString &ruta)
{
    return ruta.sliced(ruta.lastIndexOf(u'/') + 1);
}

Ficheros delCarrete(const Carrete &carrete)
{
    Ficheros ficheros;
    for (const auto &fichero : carrete.ficheros)
        ficheros.emplace_back(fichero.ruta, fichero.ficha.tamano);
    return ficheros;
}

int contarElPlan(const Ficheros &ficheros, Avisos &avisar)
{
    qint64 bytes = 0;
    for (const auto &[ruta, suyos] : ficheros)
        bytes += suyos;
    avisar.avisar(u"plan"_s, {{u"a_borrar"_s, static_cast<qint64>(ficheros.size())}, {u"bytes"_s, bytes}});
    return 0;
}

/// Deletes them one by one, as far as the phone answers and nobody asks to end. Needs the owner's confirmation.
CuentaDeBorrados borrarFicheros(Afc &afc, const Ficheros &ficheros, Avisos &avisar)
{
    CuentaDeBorrados cuenta;
    if (!confirmado())
        return cuenta;
    avisar.total(static_cast<qint64>(ficheros.size()));
    for (const auto &[ruta, bytes] : ficheros) {
        if (Interrupcion::pedida())
            break;
        const auto motivo = afc.borrar(ruta);
        if (afc.perdido())
            break;
        if (!motivo) {
            ++cuenta.borrados;
            cuenta.liberados += bytes;
        } else if (!afc.faltaba()) {
            ++cuenta.siguenAhi;
            avisar.linea(*motivo);
        }
        avisar.progreso(cuenta.borrados + cuenta.siguenAhi,
                        {{u"copiados"_s, cuenta.borrados}, {u"fichero"_s, nombreDe(ruta)}});
    }
    return cuenta;
}

int sinTelefono(const CuentaDeBorrados &cuenta, Avisos &avisar)
{
    return avisar.error(u"El iPhone ha dejado de responder cuando iban %1 archivos borrados. Mira el cable y vuelve a "
                        "intentarlo."_s.arg(cuenta.borrados));
}

/// Files of the whole library of photos, the app's list left out.
Resultado<Ficheros> deLaBiblioteca(Conexiones &conexiones, Avisos &avisar)
{
    QStringList problemas;
    const auto hallados = recorrer(conexiones,
                                   {QString::fromLatin1(carpetaDelCarrete), QString::fromLatin1(carpetaDeRetoques),
                                    QString::fromLatin1(carpetaDeMiniaturas)},
                                   problemas);
    if (!hallados)
        return Resultado<Ficheros>::fallo(hallados.motivo());
    for (const auto &problema : problemas)
        avisar.linea(problema);
    Ficheros ficheros;
    for (const auto &[ruta, ficha] : *hallados)
        ficheros.emplace_back(ruta, ficha.tamano);
    // The photos first: should it end early, their thumbnails are still of use.
    std::sort(ficheros.begin(), ficheros.end());
    return ficheros;
}

qint64 contarEn(const Ficheros &ficheros, const char *carpeta)
{
    const auto principio = QString::fromLatin1(carpeta) + u'/';
    return std::count_if(ficheros.begin(), ficheros.end(),
                         [&](const auto &fichero) { return fichero.first.startsWith(principio); });
}

/// Folders that the deleted files left empty, the deepest first.
void quitarCarpetasVacias(Afc &afc, const Ficheros &ficheros, const char *bajo)
{
    const auto principio = QString::fromLatin1(bajo) + u'/';
    QSet<QString> carpetas;
    for (const auto &[ruta, bytes] : ficheros) {
        for (auto corte = ruta.lastIndexOf(u'/'); corte > principio.size() && ruta.startsWith(principio);
             corte = ruta.lastIndexOf(u'/', corte - 1))
            carpetas << ruta.first(corte);
    }
    auto orden = carpetas.values();
    std::sort(orden.begin(), orden.end(), [](const auto &a, const auto &b) { return a.size() > b.size(); });
    for (const auto &carpeta : orden)
        afc.borrar(carpeta); // one with something in it stays
}

int borrarLista(const QStringList &argumentos, Avisos &avisar, bool conLaListaDeFotos)
{
    const auto rutas = leerRutas(argumentos[1]);
    if (!rutas)
        return avisar.error(rutas.motivo());
    return conElTelefono(argumentos[0], avisar, [&](Conexiones &conexiones) {
        auto &afc = conexiones.primera();
        const auto [hallados, perdidos] = buscarRutas(conexiones, *rutas);
        if (afc.perdido())
            return sinTelefono({}, avisar);
        Ficheros ficheros;
        for (const auto &fichero : hallados)
            ficheros.emplace_back(fichero.ruta, fichero.ficha.tamano);
        if (!confirmado())
            return contarElPlan(ficheros, avisar);
        const auto cuenta = borrarFicheros(afc, ficheros, avisar);
        const bool listaBorrada = conLaListaDeFotos && cuenta.borrados > 0 && !afc.perdido() && borrarBaseDeFotos(afc);
        if (Interrupcion::pedida())
            return Interrupcion::estado;
        const auto carrete = afc.perdido() ? Resultado<Carrete>::fallo({}) : leerCarrete(conexiones);
        if (!carrete)
            return sinTelefono(cuenta, avisar);
        avisar.avisar(u"fin"_s, {{u"borrados"_s, cuenta.borrados},
                                 {u"siguen_ahi"_s, cuenta.siguenAhi},
                                 {u"quedan_en_carrete"_s, contarElementos(*carrete)},
                                 {u"lista_borrada"_s, listaBorrada}});
        return cuenta.siguenAhi == 0 ? 0 : 1;
    });
}

} // namespace

int borrarFotosIPhone(const QStringList &argumentos, Avisos &avisar)
{
    return conElCarrete(argumentos[0], avisar, [&](Conexiones &conexiones, const Carrete &carrete) {
        const auto ficheros = delCarrete(carrete);
        if (!confirmado())
            return contarElPlan(ficheros, avisar);
        const auto cuenta = borrarFicheros(conexiones.primera(), ficheros, avisar);
        if (Interrupcion::pedida())
            return Interrupcion::estado;
        if (conexiones.primera().perdido())
            return sinTelefono(cuenta, avisar);
        avisar.avisar(u"fin"_s, {{u"borrados"_s, cuenta.borrados}, {u"liberados"_s, cuenta.liberados}});
        return cuenta.siguenAhi == 0 ? 0 : 1;
    });
}

int borrarBibliotecaFotos(const QStringList &argumentos, Avisos &avisar)
{
    return conElTelefono(argumentos[0], avisar, [&](Conexiones &conexiones) {
        const auto ficheros = deLaBiblioteca(conexiones, avisar);
        if (!ficheros)
            return avisar.error(ficheros.motivo());
        if (!confirmado())
            return contarElPlan(*ficheros, avisar);
        auto &afc = conexiones.primera();
        const auto cuenta = borrarFicheros(afc, *ficheros, avisar);
        for (const auto *carpeta : {carpetaDelCarrete, carpetaDeRetoques, carpetaDeMiniaturas})
            quitarCarpetasVacias(afc, *ficheros, carpeta);
        const bool listaBorrada = cuenta.borrados > 0 || ficheros->empty() ? borrarBaseDeFotos(afc) : false;
        if (Interrupcion::pedida())
            return Interrupcion::estado;
        const auto quedan = afc.perdido() ? Resultado<Ficheros>::fallo({}) : deLaBiblioteca(conexiones, avisar);
        if (!quedan)
            return sinTelefono(cuenta, avisar);
        const auto fotos = contarEn(*quedan, carpetaDelCarrete);
        const auto miniaturas = contarEn(*quedan, carpetaDeMiniaturas);
        avisar.avisar(u"fin"_s, {{u"borrados"_s, cuenta.borrados},
                                 {u"quedan_fotos"_s, fotos},
                                 {u"quedan_miniaturas"_s, miniaturas},
                                 {u"lista_borrada"_s, listaBorrada}});
        return fotos == 0 && miniaturas == 0 && listaBorrada ? 0 : 1;
    });
}

int borrarElegidas(const QStringList &argumentos, Avisos &avisar)
{
    return borrarLista(argumentos, avisar, false);
}

int borrarElegidasDeVerdad(const QStringList &argumentos, Avisos &avisar)
{
    return borrarLista(argumentos, avisar, true);
}

} // namespace vellora::motor
