#include "extraction/TextoConAtributos.h"

using namespace vellora;

/// Any bytes as the body of a message. What comes out lies within them, and there is no more of it than there are
/// bytes.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t largo)
{
    const QByteArrayView entrada(bytes, static_cast<qsizetype>(largo));
    const auto leido = TextoConAtributos::leer(entrada);
    if (!leido)
        return 0;
    const auto dentro = [&entrada](QByteArrayView vista) {
        return vista.isEmpty() || (vista.begin() >= entrada.begin() && vista.end() <= entrada.end());
    };
    if (!dentro(leido->texto) || leido->tramos.size() + leido->atributos.size() > largo)
        __builtin_trap();
    for (const auto &tramo : leido->tramos) {
        for (const auto &[nombre, valor] : leido->atributos.at(tramo.atributos)) {
            if (!dentro(nombre) || !dentro(valor.bytes))
                __builtin_trap();
        }
    }
    return 0;
}
