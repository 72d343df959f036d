#include "engine/roll/Carrete.h"

#include "engine/Interrupcion.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <tuple>
#include <unordered_set>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// What a connection asks for before it looks for more to do.
constexpr size_t deUnaVez = 64;
// The roll is four deep; what goes on for ever has to end somewhere.
constexpr int masHondo = 64;

bool estaEscondido(const QString &nombre)
{
    return nombre.startsWith(u'.');
}

/// The folders of one level, looked into over several connections.
class Recorrido
{
public:
    Recorrido(Conexiones &lasConexiones, QStringList &losProblemas) : conexiones(lasConexiones), problemas(losProblemas)
    {
    }

    /// Why it could not be walked, or absent.
    std::optional<QString> recorrer(const QStringList &carpetas)
    {
        auto pendientes = carpetas;
        for (int nivel = 0; nivel < masHondo && !pendientes.isEmpty(); ++nivel) {
            rutas.clear();
            hondas.clear();
            sinHacer = 0;
            conexiones.repartir(static_cast<size_t>(pendientes.size()),
                                [&](Afc &afc, size_t) { listar(afc, pendientes, nivel == 0); });
            sinHacer = 0;
            conexiones.repartir(rutas.size() / deUnaVez, [&](Afc &afc, size_t) { mirar(afc); });
            if (perdida)
                return perdida;
            pendientes = hondas;
        }
        if (!pendientes.isEmpty())
            problemas << u"No he mirado dentro de %1: está a demasiadas carpetas de hondo."_s.arg(pendientes.front());
        return {};
    }

    std::vector<std::pair<QString, FichaAfc>> ficheros;

private:
    void listar(Afc &afc, const QStringList &carpetas, bool puedenFaltar)
    {
        for (auto i = sinHacer++; i < static_cast<size_t>(carpetas.size()); i = sinHacer++) {
            const auto &carpeta = carpetas[static_cast<qsizetype>(i)];
            const auto nombres = afc.listar(carpeta);
            const std::lock_guard cerrojo(mutex);
            if (afc.perdido()) {
                perdida = nombres.motivo();
                return;
            }
            if (!nombres && !(puedenFaltar && afc.faltaba()))
                problemas << nombres.motivo();
            if (!nombres)
                continue;
            for (const auto &nombre : *nombres) {
                if (!estaEscondido(nombre))
                    rutas.push_back(carpeta + u'/' + nombre);
            }
        }
    }
    void mirar(Afc &afc)
    {
        for (auto desde = sinHacer.fetch_add(deUnaVez); desde < rutas.size() && !Interrupcion::pedida();
             desde = sinHacer.fetch_add(deUnaVez)) {
            std::vector<std::pair<QString, FichaAfc>> suyos;
            for (auto i = desde; i < std::min(desde + deUnaVez, rutas.size()); ++i)
                unaRuta(afc, rutas[i], suyos);
            const std::lock_guard cerrojo(mutex);
            if (perdida)
                return;
            std::move(suyos.begin(), suyos.end(), std::back_inserter(ficheros));
        }
        // Only the next answer proves the end of the last one.
        if (const auto motivo = afc.comprobar()) {
            const std::lock_guard cerrojo(mutex);
            perdida = motivo;
        }
    }
    void unaRuta(Afc &afc, const QString &ruta, std::vector<std::pair<QString, FichaAfc>> &suyos)
    {
        const auto ficha = afc.ficha(ruta);
        if (ficha && ficha->tipo == FichaAfc::Tipo::Fichero)
            suyos.emplace_back(ruta, *ficha);
        if (ficha && ficha->tipo != FichaAfc::Tipo::Carpeta)
            return;
        const std::lock_guard cerrojo(mutex);
        if (ficha)
            hondas << ruta;
        else if (afc.perdido())
            perdida = ficha.motivo();
        else if (!afc.faltaba()) // deleted on the phone while it was listed
            problemas << ficha.motivo();
    }

    Conexiones &conexiones;
    QStringList &problemas;
    std::mutex mutex;
    std::atomic<size_t> sinHacer = 0;
    std::vector<QString> rutas;
    QStringList hondas;
    std::optional<QString> perdida;
};

} // namespace

Resultado<std::vector<std::pair<QString, FichaAfc>>> recorrer(Conexiones &conexiones, const QStringList &carpetas,
                                                              QStringList &problemas)
{
    using Ficheros = std::vector<std::pair<QString, FichaAfc>>;
    Recorrido recorrido(conexiones, problemas);
    if (const auto motivo = recorrido.recorrer(carpetas))
        return Resultado<Ficheros>::fallo(*motivo);
    if (Interrupcion::pedida())
        return Resultado<Ficheros>::fallo(u"Se ha pedido parar."_s);
    return std::move(recorrido.ficheros);
}

Resultado<Carrete> leerCarrete(Conexiones &conexiones)
{
    Carrete carrete;
    QStringList carpetas;
    for (const auto *carpeta : {carpetaDelCarrete, carpetaDeRetoques, carpetaDeFuera, carpetaDeRetoquesDeFuera})
        carpetas << QString::fromLatin1(carpeta);
    auto hallados = recorrer(conexiones, carpetas, carrete.problemas);
    if (!hallados)
        return Resultado<Carrete>::fallo(hallados.motivo());
    carrete.ficheros.reserve(hallados->size());
    for (auto &[ruta, ficha] : *hallados) {
        auto &suyos = seGuardaFuera(ruta) ? carrete.aparte : carrete.ficheros;
        if (auto relativa = sitioLocal(ruta))
            suyos.push_back({std::move(ruta), *std::move(relativa), ficha});
        else if (ruta.startsWith(QString::fromLatin1(carpetaDelCarrete)) ||
                 ruta.startsWith(QString::fromLatin1(carpetaDeFuera)))
            carrete.problemas << u"Su nombre no es de fiar: "_s + ruta;
    }
    const auto porSitio = [](const auto &a, const auto &b) {
        return std::tie(a.relativa, a.ruta) < std::tie(b.relativa, b.ruta);
    };
    std::sort(carrete.ficheros.begin(), carrete.ficheros.end(), porSitio);
    std::sort(carrete.aparte.begin(), carrete.aparte.end(), porSitio);
    return carrete;
}

qint64 contarElementos(const Carrete &carrete)
{
    std::unordered_set<std::string> elementos;
    for (const auto &fichero : carrete.ficheros) {
        if (tipoDe(fichero.relativa) != TipoDeFichero::Ajustes)
            elementos.insert(elementoDe(fichero.relativa).toStdString());
    }
    return static_cast<qint64>(elementos.size());
}

} // namespace vellora::motor
