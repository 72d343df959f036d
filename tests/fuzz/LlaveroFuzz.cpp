#include "engine/backup/LlaveroDeCopia.h"

using namespace vellora::motor;

/// Any bytes as what an item of the keychain holds once deciphered, and as the keychain's own property list.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t largo)
{
    const QByteArray entrada(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(largo));
    for (const auto &[nombre, valor] : atributosDe(entrada)) {
        if (nombre.size() + valor.size() > entrada.size())
            __builtin_trap();
    }
    const auto abierto = abrirLlavero(entrada, {});
    if (abierto && !abierto->claves.isEmpty())
        __builtin_trap(); // no key opens anything here
    return 0;
}
