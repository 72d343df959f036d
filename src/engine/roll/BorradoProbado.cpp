#include "engine/roll/BorradoProbado.h"

#include "engine/Interrupcion.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Putting the note on the disk takes a hard disk as long as reading three photos: it is done once for so many.
constexpr size_t fotosEnUnaTanda = 24;

} // namespace

BorradoProbado::BorradoProbado(const QString &laCarpeta, Copiadas &lasCopiadas, Conexiones &lasConexiones,
                               Avisos &losAvisos, CuentaDeBorrado &laCuenta)
    : carpeta(laCarpeta), copiadas(lasCopiadas), conexiones(lasConexiones), avisar(losAvisos), cuenta(laCuenta)
{
}

bool BorradoProbado::parado() const
{
    return Interrupcion::pedida() || conexiones.primera().perdido();
}

std::optional<QString> BorradoProbado::preparar(const std::vector<FotoEntera> &fotos)
{
    QStringList rutas;
    for (const auto &foto : fotos) {
        for (const auto *fichero : foto)
            rutas << fichero->ruta;
    }
    auto abierta = PruebaDeCopia::abrir(carpeta, copiadas, conexiones, rutas);
    if (!abierta)
        return abierta.motivo();
    prueba.emplace(*std::move(abierta));
    // Once it is known that the folder is not the phone's.
    cerrojo.emplace(CerrojoDeCarpeta::tomar(carpeta));
    if (auto motivo = cerrojo->impedimento())
        return motivo;
    auto abiertaLista = ListaDeBorradas::abrir(carpeta);
    if (!abiertaLista)
        return abiertaLista.motivo();
    lista.emplace(*std::move(abiertaLista));
    return {};
}

std::optional<QString> BorradoProbado::borrar(const std::vector<FotoEntera> &fotos, const Avance &elAvance)
{
    avance = elAvance;
    if (fotos.empty())
        return {};
    if (auto motivo = preparar(fotos))
        return motivo;
    std::vector<Probada> tanda;
    for (const auto &foto : fotos) {
        if (parado())
            return {}; // what has been proved and not noted stays
        if (auto probada = probar(foto))
            tanda.push_back(*std::move(probada));
        const bool esLaUltima = &foto == &fotos.back();
        if (tanda.empty() || (!esLaPrimera && tanda.size() < fotosEnUnaTanda && !esLaUltima))
            continue;
        if (auto motivo = quitar(tanda))
            return motivo;
        tanda.clear();
    }
    return {};
}

std::optional<BorradoProbado::Probada> BorradoProbado::probar(const FotoEntera &foto)
{
    Probada probada;
    for (const auto *fichero : foto) {
        auto copia = prueba->probar(*fichero);
        if (!copia && parado())
            return {};
        if (!copia) {
            decirPorQue(*fichero, copia.motivo());
            cuenta.sinPrueba += static_cast<qint64>(foto.size());
            avance(*fichero);
            return {};
        }
        probada.push_back({fichero, *std::move(copia)});
    }
    return probada;
}

std::optional<QString> BorradoProbado::quitar(const std::vector<Probada> &tanda)
{
    std::vector<ListaDeBorradas::Linea> lineas;
    for (const auto &probada : tanda)
        lineas.insert(lineas.end(), probada.begin(), probada.end());
    if (!lista->apuntar(lineas))
        return u"No puedo apuntar en la carpeta de las fotos lo que borro, así que no borro nada más. ¿Está lleno el "
               "disco?"_s;
    std::optional<QString> motivo;
    for (const auto &probada : tanda) {
        if (!motivo && !parado())
            motivo = quitarFoto(probada);
        else
            dejar(probada, 0, {}, nullptr);
    }
    return motivo;
}

std::optional<QString> BorradoProbado::quitarFoto(const Probada &probada)
{
    if (const auto motivo = haCambiado(probada)) {
        dejar(probada, 0, *motivo, conexiones.primera().perdido() ? nullptr : &CuentaDeBorrado::sinPrueba);
        return {};
    }
    auto &afc = conexiones.primera();
    for (size_t i = 0; i < probada.size(); ++i) {
        const auto &linea = probada[i];
        const auto motivo = afc.borrar(linea.fichero->ruta);
        if (motivo && afc.faltaba())
            continue; // deleted on the phone meanwhile
        if (motivo) {
            dejar(probada, i, *motivo, afc.perdido() ? nullptr : &CuentaDeBorrado::negados);
            return {};
        }
        ++cuenta.borrados;
        cuenta.liberados += linea.fichero->ficha.tamano;
        avance(*linea.fichero);
        if (std::exchange(esLaPrimera, false) && !prueba->sigueAhi(*linea.fichero, linea.copia) &&
            !Interrupcion::pedida()) {
            dejar(probada, i + 1, {}, nullptr);
            return u"Al borrar la primera foto del iPhone, su copia (%1) ha dejado de leerse bien. He parado y no "
                   u"borro "
                   "ninguna más: puede que la carpeta de las fotos sea el propio iPhone."_s.arg(
                       QString::fromUtf8(linea.copia.relativa));
        }
    }
    return {};
}

std::optional<QString> BorradoProbado::haCambiado(const Probada &probada)
{
    auto &afc = conexiones.primera();
    for (const auto &linea : probada) {
        const auto ahora = afc.ficha(linea.fichero->ruta);
        if (!ahora && !afc.faltaba())
            return ahora.motivo();
        if (ahora && *ahora != linea.fichero->ficha)
            return u"ha cambiado en el iPhone"_s;
    }
    return {};
}

void BorradoProbado::dejar(const Probada &probada, size_t desde, const QString &motivo, qint64 CuentaDeBorrado::*donde)
{
    for (auto i = desde; i < probada.size(); ++i) {
        lista->apuntarQueSigue(probada[i]);
        if (donde != nullptr)
            ++(cuenta.*donde);
    }
    if (motivo.isEmpty() || donde == nullptr)
        return;
    decirPorQue(*probada[desde].fichero, motivo);
    avance(*probada[desde].fichero);
}

void BorradoProbado::decirPorQue(const FicheroDelCarrete &fichero, const QString &motivo)
{
    avisar.linea(u"Dejo en el iPhone %1: %2."_s.arg(QString::fromUtf8(fichero.relativa), motivo));
}

} // namespace vellora::motor
