#include "engine/roll/Carrete.h"

#include "core/CarpetaDeDestino.h"
#include "engine/Interrupcion.h"

#include <QRegularExpression>

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
// A folder, its photo and what hangs from it: the roll is not deeper.
constexpr int masHondo = 8;

const auto principioDelCarrete = u"/DCIM/"_s;
const auto principioDeRetoques = u"/PhotoData/Mutations/DCIM/"_s;

/// "IMG_0001" and an edit of it: "IMG_E0001".
QString nombreDeRetoque(const QString &original)
{
    static const QRegularExpression conPrefijo(u"^([A-Z]{3}_)(\\d.*)$"_s);
    const auto partes = conPrefijo.match(original);
    return partes.hasMatch() ? partes.captured(1) + u'E' + partes.captured(2) : original + u"_E"_s;
}

/// Of "100APPLE/IMG_0001/Adjustments/FullSizeRender.heic".
std::optional<QString> sitioDeRetoque(const QString &relativa)
{
    const auto partes = relativa.split(u'/');
    if (partes.size() != 4 || partes[2] != "Adjustments"_L1)
        return {};
    if (partes[3] == "Adjustments.plist"_L1)
        return partes[0] + u'/' + partes[1] + u".AAE"_s;
    const auto punto = partes[3].lastIndexOf(u'.');
    if (punto < 0 || QStringView(partes[3]).first(punto) != u"FullSizeRender")
        return {};
    return partes[0] + u'/' + nombreDeRetoque(partes[1]) + partes[3].sliced(punto).toUpper();
}

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

std::optional<QByteArray> sitioLocal(const QString &ruta)
{
    std::optional<QString> relativa;
    if (ruta.startsWith(principioDelCarrete))
        relativa = ruta.sliced(principioDelCarrete.size());
    else if (ruta.startsWith(principioDeRetoques))
        relativa = sitioDeRetoque(ruta.sliced(principioDeRetoques.size()));
    if (!relativa)
        return {};
    auto bytes = relativa->toUtf8();
    return CarpetaDeDestino::esSegura(bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

Resultado<Carrete> leerCarrete(Conexiones &conexiones)
{
    Carrete carrete;
    auto hallados =
        recorrer(conexiones, {QString::fromLatin1(carpetaDelCarrete), QString::fromLatin1(carpetaDeRetoques)},
                 carrete.problemas);
    if (!hallados)
        return Resultado<Carrete>::fallo(hallados.motivo());
    carrete.ficheros.reserve(hallados->size());
    for (auto &[ruta, ficha] : *hallados) {
        if (auto relativa = sitioLocal(ruta))
            carrete.ficheros.push_back({std::move(ruta), *std::move(relativa), ficha});
        else if (ruta.startsWith(principioDelCarrete))
            carrete.problemas << u"Su nombre no es de fiar: "_s + ruta;
    }
    std::sort(carrete.ficheros.begin(), carrete.ficheros.end(),
              [](const auto &a, const auto &b) { return std::tie(a.relativa, a.ruta) < std::tie(b.relativa, b.ruta); });
    return carrete;
}

QByteArray otroNombre(const QByteArray &relativa, int vez)
{
    if (vez == 1)
        return relativa;
    const auto punto = relativa.lastIndexOf('.');
    const auto corte = punto > relativa.lastIndexOf('/') + 1 ? punto : relativa.size();
    return relativa.first(corte) + " (" + QByteArray::number(vez) + ')' + relativa.sliced(corte);
}

QByteArray elementoDe(QByteArrayView relativa)
{
    static const QRegularExpression retoque(u"^([A-Z]{3}_)[EO](\\d.*)$"_s);
    const auto barra = relativa.lastIndexOf('/');
    auto nombre = QString::fromUtf8(relativa.sliced(barra + 1));
    nombre.truncate(nombre.lastIndexOf(u'.') < 0 ? nombre.size() : nombre.lastIndexOf(u'.'));
    nombre.replace(retoque, u"\\1\\2"_s);
    return relativa.first(barra + 1).toByteArray() + nombre.toUtf8();
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

TipoDeFichero tipoDe(QByteArrayView relativa)
{
    const auto fin = relativa.sliced(relativa.lastIndexOf('.') + 1).toByteArray().toUpper();
    if (fin == "AAE")
        return TipoDeFichero::Ajustes;
    return fin == "MOV" || fin == "MP4" || fin == "M4V" || fin == "3GP" ? TipoDeFichero::Video : TipoDeFichero::Foto;
}

} // namespace vellora::motor
