#include "photos/FotoDelCarrete.h"

#include "core/Formato.h"

#include <QDateTime>
#include <QHash>

#include <numeric>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// The lower, the more it is what the photo is known by.
int puesto(const FotoDelCarrete &foto)
{
    if (foto.esRetoque())
        return 0;
    if (foto.esAjustes())
        return 3;
    return foto.esVideo() ? 2 : 1;
}

} // namespace

FotoDelCarrete FotoDelCarrete::deJson(const QJsonObject &objeto)
{
    FotoDelCarrete foto;
    foto.ruta = objeto["ruta"_L1].toString();
    foto.carpeta = objeto["carpeta"_L1].toString();
    foto.nombre = objeto["nombre"_L1].toString();
    foto.bytes = objeto["bytes"_L1].toInteger();
    foto.fecha = objeto["fecha"_L1].toInteger();
    foto.tipo = objeto["tipo"_L1].toString();
    foto.elemento = objeto["elemento"_L1].toString(foto.ruta);
    foto.copiado = objeto["copiado"_L1].toBool();
    foto.soloSeCopia = objeto["solo_se_copia"_L1].toBool();
    foto.estado = objeto["estado"_L1].toString(u"visible"_s);
    return foto;
}

bool ElementoGaleria::esVivo() const
{
    return !esVideo() && std::any_of(ficheros.begin(), ficheros.end(), [](const auto &uno) { return uno.esVideo(); });
}

bool ElementoGaleria::retocada() const
{
    return std::any_of(ficheros.begin(), ficheros.end(),
                       [](const auto &uno) { return uno.esRetoque() || uno.esAjustes(); });
}

bool ElementoGaleria::copiado() const
{
    return std::all_of(ficheros.begin(), ficheros.end(), [](const auto &uno) { return uno.copiado; });
}

qint64 ElementoGaleria::bytes() const
{
    return std::accumulate(ficheros.begin(), ficheros.end(), qint64(0),
                           [](qint64 suma, const auto &uno) { return suma + uno.bytes; });
}

QStringList ElementoGaleria::rutas() const
{
    QStringList lista;
    for (const auto &uno : ficheros)
        lista << uno.ruta;
    return lista;
}

QString ElementoGaleria::descripcion() const
{
    const auto dia =
        Formato::espanol().toString(QDateTime::fromSecsSinceEpoch(principal.fecha).date(), u"d 'de' MMMM 'de' yyyy"_s);
    QStringList partes{principal.nombre, Formato::tamano(bytes()), dia};
    if (esVideo())
        partes << u"vídeo"_s;
    if (esVivo())
        partes << u"foto en vivo"_s;
    if (retocada())
        partes << u"retocada"_s;
    if (oculta())
        partes << u"oculta en el iPhone"_s;
    if (enPapelera())
        partes << u"en la papelera del iPhone"_s;
    partes << (copiado() ? u"copiada en el Mac"_s : u"sin copiar: se ve en pequeño hasta que la copies"_s);
    return partes.join(u" · "_s);
}

QList<ElementoGaleria> agrupar(const QList<FotoDelCarrete> &fotos)
{
    QList<ElementoGaleria> elementos;
    QHash<QString, qsizetype> lugares;
    for (const auto &foto : fotos) {
        const auto hallado = lugares.constFind(foto.elemento);
        if (hallado == lugares.cend()) {
            lugares.insert(foto.elemento, elementos.size());
            elementos.append({foto.elemento, foto, {foto}});
            continue;
        }
        auto &suyo = elementos[*hallado];
        suyo.ficheros << foto;
        if (puesto(foto) < puesto(suyo.principal))
            suyo.principal = foto;
    }
    return elementos;
}

} // namespace vellora
