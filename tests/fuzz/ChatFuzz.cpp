#include "extraction/Aguja.h"
#include "extraction/Conversacion.h"

using namespace vellora;

/// Any bytes as the text of a chat, and as what is looked for in it.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t largo)
{
    const QByteArray entrada(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(largo));
    const auto mensajes = Mensajes::deTexto(entrada);
    qsizetype letras = 0;
    for (qsizetype i = 0; i < mensajes.cuantos(); ++i)
        letras += mensajes.mensaje(i).texto.size() + mensajes.dia(i).size();
    if (letras > 2 * entrada.size())
        __builtin_trap();
    const auto busco = QString::fromUtf8(entrada.first(entrada.size() / 8));
    const auto sitio = Aguja(busco).en(entrada);
    if (sitio < -1 || sitio > entrada.size())
        __builtin_trap();
    return 0;
}
