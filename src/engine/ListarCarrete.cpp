#include "engine/Ordenes.h"
#include "engine/roll/Copiadas.h"
#include "engine/roll/Rutas.h"
#include "engine/roll/SinCopia.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// A roll of tens of thousands never stands whole in one notice.
constexpr qsizetype enUnAviso = 2000;

/// What the phone has of a file's photo, and whether the file is one by itself there.
QString estadoDe(const FicheroDelCarrete &fichero, const std::unordered_map<std::string, EstadoDeFoto> &estados)
{
    const auto hallado = estados.find(elementoDe(fichero.relativa).toStdString());
    if (hallado == estados.end() || hallado->second == EstadoDeFoto::Visible)
        return u"visible"_s;
    return hallado->second == EstadoDeFoto::Oculta ? u"oculta"_s : u"papelera"_s;
}

QString tipoEnPalabra(const FicheroDelCarrete &fichero)
{
    const auto tipo = tipoDe(fichero.relativa);
    if (tipo == TipoDeFichero::Ajustes)
        return u"ajustes"_s;
    if (esRetoque(fichero.relativa))
        return u"retoque"_s;
    return tipo == TipoDeFichero::Video ? u"video"_s : u"foto"_s;
}

/// `listado`: the phone lists this very file.
QJsonObject describir(const FicheroDelCarrete &fichero, bool listado)
{
    const auto relativa = QString::fromUtf8(fichero.relativa);
    const auto barra = relativa.lastIndexOf(u'/');
    // A video that the phone lists by itself is no half of a Live Photo, whatever its name.
    const bool esSuPropio = listado && tipoDe(fichero.relativa) == TipoDeFichero::Video;
    return {{u"ruta"_s, fichero.ruta},
            {u"carpeta"_s, relativa.first(std::max<qsizetype>(barra, 0))},
            {u"nombre"_s, relativa.sliced(barra + 1)},
            {u"bytes"_s, fichero.ficha.tamano},
            {u"fecha"_s, fichero.ficha.modificado.toSecsSinceEpoch()},
            {u"tipo"_s, tipoEnPalabra(fichero)},
            {u"elemento"_s, esSuPropio ? relativa : QString::fromUtf8(elementoDe(fichero.relativa))},
            {u"solo_se_copia"_s, seGuardaFuera(fichero.ruta)}};
}

/// What the phone's own list tells.
struct LoQueSabe {
    BaseDeFotos fotos;       ///< of the roll, and of what is kept outside of it
    QString alQuitarLaLista; ///< see `SinCopia`
};
LoQueSabe queSabeElTelefono(Afc &afc, const Carrete &carrete)
{
    auto lista = leerListaDeFotos(afc);
    if (!lista)
        return {};
    const auto alQuitarla = contarSinCopia(*lista, carrete).alQuitarLaLista().value_or(QString());
    lista->delCarrete.merge(lista->deFuera);
    return {std::move(lista->delCarrete), alQuitarla};
}

} // namespace

int listarCarrete(const QStringList &argumentos, Avisos &avisar)
{
    return conElCarrete(argumentos[0], avisar, [&](Conexiones &conexiones, const Carrete &carrete) {
        const auto copiadas = Copiadas::leer(argumentos[1], argumentos[0]);
        const auto [base, queSePierde] = queSabeElTelefono(conexiones.primera(), carrete);
        // The list knows one file of each photo: the state is that of all its files.
        std::unordered_map<std::string, EstadoDeFoto> estados;
        for (const auto &[relativa, estado] : base)
            estados[elementoDe(QByteArrayView(relativa.data(), static_cast<qsizetype>(relativa.size())))
                        .toStdString()] = estado;

        QJsonArray lista;
        const auto soltar = [&, &queSePierde = queSePierde] {
            const bool dicho = avisar.avisar(
                u"carrete"_s,
                {{u"lista"_s, lista}, {u"sin_mirar"_s, carrete.problemas.size()}, {u"al_quitar_lista"_s, queSePierde}});
            lista = {};
            return dicho;
        };
        auto ficheros = carrete.ficheros;
        ficheros.insert(ficheros.end(), carrete.aparte.begin(), carrete.aparte.end());
        for (const auto &fichero : ficheros) {
            auto objeto = describir(fichero, base.contains(fichero.relativa.toStdString()));
            objeto[u"copiado"_s] = copiadas.juzgar(fichero).juicio == Copiadas::Juicio::Esta;
            objeto[u"estado"_s] = estadoDe(fichero, estados);
            lista << objeto;
            if (lista.size() >= enUnAviso && !soltar())
                return avisar.error(u"No queda sitio ni para la lista de las fotos. Libera espacio en el disco."_s);
        }
        return soltar() ? 0
                        : avisar.error(u"No queda sitio ni para la lista de las fotos. Libera espacio en el disco."_s);
    });
}

} // namespace vellora::motor
