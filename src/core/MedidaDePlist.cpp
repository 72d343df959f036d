#include "core/MedidaDePlist.h"

#include <QByteArrayView>

#include <algorithm>
#include <optional>
#include <vector>

namespace vellora
{

namespace
{

/// Reads the tags of an XML list and nothing else. It is stricter than the library on purpose: what it passes over (a
/// comment, a declaration) holds no "<", and a tag holds nothing but its name, so that both see the same tags.
class MedidorXml
{
public:
    explicit MedidorXml(QByteArrayView elXml) : xml(elXml) {}

    bool cabe()
    {
        if (static_cast<quint64>(xml.size()) > maximoDeBytesDePlist)
            return false;
        for (auto aqui = xml.indexOf('<'); aqui >= 0; aqui = xml.indexOf('<', aqui)) {
            const auto fin = etiqueta(xml.sliced(aqui + 1));
            if (!fin || nodos > maximoDeNodosDePlist || hondo > maximoDeFondoDePlist || hondo < 0)
                return false;
            aqui += 1 + *fin;
        }
        return nodos > 0;
    }

private:
    /// Position behind the end mark, absent when another tag begins before it.
    static std::optional<qsizetype> hasta(QByteArrayView resto, QByteArrayView marca)
    {
        const auto fin = resto.indexOf(marca);
        if (fin < 0 || resto.first(fin).contains('<'))
            return {};
        return fin + marca.size();
    }

    static bool esNombre(QByteArrayView texto)
    {
        return !texto.isEmpty() &&
               std::all_of(texto.begin(), texto.end(), [](char letra) { return letra >= 'a' && letra <= 'z'; });
    }

    /// `resto` begins behind the "<". Length of the tag.
    std::optional<qsizetype> etiqueta(QByteArrayView resto)
    {
        if (resto.startsWith("?"))
            return hasta(resto, "?>");
        if (resto.startsWith("!--"))
            return hasta(resto, "-->");
        const auto fin = hasta(resto, ">");
        if (!fin)
            return {};
        auto dentro = resto.first(*fin - 1);
        if (dentro.startsWith('!')) // an inner declaration would bring entities
            return dentro.startsWith("!DOCTYPE plist") && !dentro.contains('[') ? fin : std::nullopt;
        if (dentro.startsWith('/')) {
            --hondo;
            return esNombre(dentro.sliced(1).trimmed()) ? fin : std::nullopt;
        }
        ++nodos;
        const bool vacia = dentro.endsWith('/');
        dentro.chop(vacia ? 1 : 0);
        hondo += vacia ? 0 : 1;
        const bool raiz = dentro == "plist" || dentro == "plist version=\"1.0\"";
        return raiz || esNombre(dentro.trimmed()) ? fin : std::nullopt;
    }

    QByteArrayView xml;
    quint32 nodos = 0;
    int hondo = 0;
};

/// Walks the objects of a binary list, each once: what it unfolds to is added up from below.
class MedidorBinario
{
public:
    explicit MedidorBinario(QByteArrayView losBytes) : bytes(losBytes) {}

    bool cabe()
    {
        constexpr qsizetype cabecera = 8;
        constexpr qsizetype cola = 32;
        if (bytes.size() < cabecera + cola)
            return false;
        const auto final = bytes.last(cola);
        largoDeSitio = static_cast<unsigned char>(final[6]);
        largoDeReferencia = static_cast<unsigned char>(final[7]);
        const auto cuantos = numero(final.sliced(8, 8));
        const auto raiz = numero(final.sliced(16, 8));
        const auto tabla = numero(final.sliced(24, 8));
        const auto fin = static_cast<quint64>(bytes.size() - cola);
        if (largoDeSitio < 1 || largoDeSitio > 8 || largoDeReferencia < 1 || largoDeReferencia > 8)
            return false;
        if (cuantos == 0 || cuantos > maximoDeNodosDePlist || tabla < cabecera || tabla > fin ||
            cuantos * static_cast<quint64>(largoDeSitio) > fin - tabla)
            return false;
        sitios = bytes.sliced(static_cast<qsizetype>(tabla),
                              static_cast<qsizetype>(cuantos * static_cast<quint64>(largoDeSitio)));
        objetos = bytes.first(static_cast<qsizetype>(tabla));
        medidos.resize(static_cast<size_t>(cuantos));
        return medir(raiz, 1) != nullptr;
    }

private:
    struct Medida {
        enum class Estado : quint8 { Nada, EnMarcha, Hecha };
        Estado estado = Estado::Nada;
        int alto = 0;      ///< levels, itself among them
        quint64 nodos = 0; ///< unfolded
        quint64 bytes = 0;
    };
    struct Objeto {
        int clase; ///< high half of the marker
        quint64 cuantos;
        QByteArrayView resto;
    };

    static quint64 numero(QByteArrayView octetos)
    {
        quint64 valor = 0;
        for (const char octeto : octetos)
            valor = valor << 8U | static_cast<unsigned char>(octeto);
        return valor;
    }

    std::optional<Objeto> objeto(quint64 cual) const
    {
        const auto sitio = numero(sitios.sliced(static_cast<qsizetype>(cual) * largoDeSitio, largoDeSitio));
        if (sitio >= static_cast<quint64>(objetos.size()))
            return {};
        auto resto = objetos.sliced(static_cast<qsizetype>(sitio));
        const auto marca = static_cast<unsigned char>(resto[0]);
        resto = resto.sliced(1);
        Objeto este{marca >> 4, marca & 0xFU, resto};
        if (este.clase > 3 && este.cuantos == 0xFU) {
            // A long count stands in an integer of its own.
            if (resto.isEmpty() || static_cast<unsigned char>(resto[0]) >> 2U != 4)
                return {};
            const auto largo = qsizetype(1) << (static_cast<unsigned char>(resto[0]) & 3U);
            if (resto.size() < 1 + largo)
                return {};
            este.cuantos = numero(resto.sliced(1, largo));
            este.resto = resto.sliced(1 + largo);
        }
        return este;
    }

    /// Null when it does not fit, or is damaged.
    const Medida *medir(quint64 cual, int fondo)
    {
        if (cual >= medidos.size() || fondo > maximoDeFondoDePlist)
            return nullptr;
        auto &medida = medidos[static_cast<size_t>(cual)];
        if (medida.estado == Medida::Estado::Hecha)
            return fondo + medida.alto - 1 <= maximoDeFondoDePlist ? &medida : nullptr;
        const auto este = objeto(cual);
        if (medida.estado == Medida::Estado::EnMarcha || !este) // it holds itself
            return nullptr;
        medida = {Medida::Estado::EnMarcha, 1, 1, 0};
        const bool cabe = este->clase >= 0xA ? medirLista(*este, medida, fondo) : medirValor(*este, medida);
        medida.estado = Medida::Estado::Hecha;
        return cabe ? &medida : nullptr;
    }

    bool medirValor(const Objeto &este, Medida &medida) const
    {
        constexpr int texto16 = 6;
        // Numbers are small whatever they say; the library looks at their lengths.
        const quint64 ancho = este.clase == texto16 ? 2 : 1;
        const auto hay = static_cast<quint64>(este.resto.size());
        if (este.clase < 4)
            return true;
        medida.bytes = este.clase == 8 ? 8 : este.cuantos * ancho;
        return este.clase == 8 || este.cuantos <= hay / ancho;
    }

    bool medirLista(const Objeto &este, Medida &medida, int fondo)
    {
        constexpr int diccionario = 0xD;
        const auto hay = static_cast<quint64>(este.resto.size() / largoDeReferencia);
        if (este.cuantos > hay)
            return false;
        const auto referencias = este.cuantos * (este.clase == diccionario ? 2 : 1);
        if (referencias > hay)
            return false;
        for (quint64 i = 0; i < referencias; ++i) {
            const auto en = static_cast<qsizetype>(i) * largoDeReferencia;
            const auto *dentro = medir(numero(este.resto.sliced(en, largoDeReferencia)), fondo + 1);
            if (dentro == nullptr)
                return false;
            medida.nodos += dentro->nodos;
            medida.bytes += dentro->bytes;
            medida.alto = std::max(medida.alto, dentro->alto + 1);
            if (medida.nodos > maximoDeNodosDePlist || medida.bytes > maximoDeBytesDePlist)
                return false;
        }
        return true;
    }

    QByteArrayView bytes;
    QByteArrayView sitios;  ///< the table of offsets
    QByteArrayView objetos; ///< everything before it
    int largoDeSitio = 0;
    int largoDeReferencia = 0;
    std::vector<Medida> medidos;
};

} // namespace

FormaDePlist medirPlist(const QByteArray &bytes)
{
    if (bytes.startsWith("bplist00"))
        return MedidorBinario(bytes).cabe() ? FormaDePlist::Binaria : FormaDePlist::Ninguna;
    return MedidorXml(bytes).cabe() ? FormaDePlist::Xml : FormaDePlist::Ninguna;
}

} // namespace vellora
