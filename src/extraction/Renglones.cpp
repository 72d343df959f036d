#include "extraction/Renglones.h"

#include "core/EscritorDeTexto.h"

#include <array>
#include <utility>

namespace vellora::Renglones
{

namespace
{

/// Whether the end of a line may begin with that byte: all others, nearly everything, are passed over fast.
constexpr auto sospechoso = [] {
    std::array<bool, 256> tabla{};
    for (const auto letra : {0x0A, 0x0B, 0x0C, 0x0D, 0xC2, 0xE2})
        tabla[static_cast<std::size_t>(letra)] = true;
    return tabla;
}();

/// Bytes of the end of a line that begins there; 0 when none does.
qsizetype finDeLinea(QByteArrayView texto, qsizetype sitio)
{
    const auto letra = static_cast<unsigned char>(texto[sitio]);
    if (!sospechoso[letra])
        return 0;
    if (letra >= '\n' && letra <= '\r')
        return letra == '\r' && sitio + 1 < texto.size() && texto[sitio + 1] == '\n' ? 2 : 1;
    if (letra != 0xC2 && letra != 0xE2)
        return 0;
    const auto resto = texto.sliced(sitio);
    if (resto.startsWith("\xC2\x85")) // NEL
        return 2;
    return resto.startsWith("\xE2\x80\xA8") || resto.startsWith("\xE2\x80\xA9") ? 3 : 0; // U+2028, U+2029
}

/// Writes anew what was added to `a` from `desde` on, if it has more than one line.
void partir(QByteArray &a, qsizetype desde, bool enUno)
{
    const auto primero = [&] {
        const char *letras = a.constData();
        for (auto sitio = desde; sitio < a.size(); ++sitio) {
            if (sospechoso[static_cast<unsigned char>(letras[sitio])] && finDeLinea(a, sitio) > 0)
                return sitio;
        }
        return a.size();
    }();
    if (primero == a.size())
        return;
    const auto resto = a.sliced(primero);
    a.truncate(primero);
    bool alPrincipio = false;
    for (qsizetype sitio = 0; sitio < resto.size();) {
        if (const auto fin = finDeLinea(resto, sitio); fin > 0) {
            a += enUno ? ' ' : '\n';
            alPrincipio = !enUno;
            sitio += fin;
            continue;
        }
        if (std::exchange(alPrincipio, false))
            a += sangria;
        a += resto[sitio++];
    }
}

} // namespace

void poner(QByteArray &a, QByteArrayView texto)
{
    const auto desde = a.size();
    ponerTextoLimpio(a, texto);
    partir(a, desde, false);
}

void ponerEnUno(QByteArray &a, QByteArrayView texto)
{
    const auto desde = a.size();
    ponerTextoLimpio(a, texto);
    partir(a, desde, true);
}

} // namespace vellora::Renglones
