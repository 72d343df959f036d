#include "extraction/TextoConAtributos.h"

#include <utility>

namespace vellora
{

namespace
{

constexpr qsizetype maximoDelArchivo = 16LL << 20;
constexpr auto ninguno = ArchivoDeObjetos::ninguno;

/// The attributes of a run, from a dictionary that begins here.
std::vector<TextoConAtributos::Atributo> leerAtributos(ArchivoDeObjetos &archivo)
{
    std::vector<TextoConAtributos::Atributo> suyos;
    archivo.grupo("i");
    for (auto quedan = archivo.largo(); quedan > 0 && !archivo.mal(); --quedan) {
        archivo.grupo("@");
        const auto clave = archivo.objeto();
        archivo.grupo("@");
        const auto valor = archivo.objeto();
        if (clave != ninguno && valor != ninguno)
            suyos.push_back({archivo.valor(clave).bytes, archivo.valor(valor)});
    }
    if (!archivo.acaba())
        archivo.fallar();
    return suyos;
}

/// Runs until the end: the number of a set of attributes, counted from 1, and a length. Where a number comes for the
/// first time its dictionary follows.
void leerTramos(ArchivoDeObjetos &archivo, TextoConAtributos &leido)
{
    while (!archivo.acaba()) {
        archivo.grupo("iI");
        const auto numero = static_cast<quint64>(archivo.entero());
        const auto largo = archivo.largo();
        if (numero < 1 || numero > leido.atributos.size() + 1)
            return archivo.fallar();
        if (numero > leido.atributos.size()) {
            archivo.grupo("@");
            const auto [cual, nuevo] = archivo.empezarObjeto();
            if (!nuevo || !archivo.es(cual, "NSDictionary"))
                return archivo.fallar();
            leido.atributos.push_back(leerAtributos(archivo));
        }
        if (!archivo.mal())
            leido.tramos.push_back({largo, static_cast<std::size_t>(numero - 1)});
    }
}

} // namespace

std::optional<TextoConAtributos> TextoConAtributos::leer(QByteArrayView bytes)
{
    if (bytes.size() > maximoDelArchivo)
        return {};
    ArchivoDeObjetos archivo(bytes);
    archivo.cabecera();
    archivo.grupo("@");
    const auto raiz = archivo.empezarObjeto();
    if (!raiz.nuevo || !archivo.es(raiz.cual, "NSAttributedString"))
        return {};
    archivo.grupo("@");
    const auto texto = archivo.objeto();
    if (archivo.mal() || !archivo.es(texto, "NSString"))
        return {};
    TextoConAtributos leido;
    leido.texto = archivo.valor(texto).bytes;
    leerTramos(archivo, leido);
    leido.entero = !archivo.mal();
    return leido;
}

} // namespace vellora
