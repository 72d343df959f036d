#include "extraction/Aguja.h"

#include <QList>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <set>

namespace vellora
{

namespace
{

constexpr qsizetype bloque = 256;
constexpr qsizetype bytesDeUnaLetra = 4;

/// From the commonest in Spanish messages on; what is not here is rarer still.
constexpr std::u32string_view frecuentes = U" eaosrnidlctumpbgvyqhfzj0123456789.,";

std::size_t rareza(char32_t letra)
{
    const auto lugar = frecuentes.find(letra);
    return lugar == std::u32string_view::npos ? frecuentes.size() : lugar;
}

QByteArray enUtf8(char32_t letra)
{
    return QString::fromUcs4(&letra, 1).toUtf8();
}

/// Every character that is this one in lower case, itself among them.
std::set<char32_t> formasDe(char32_t letra)
{
    // Beside its own capital and title form, a few letters are the small form of a sign elsewhere: theta, sharp s, and
    // the signs of ohm, kelvin and angstrom.
    std::set<char32_t> formas{letra};
    for (const char32_t otra : {char32_t(QChar::toUpper(letra)), char32_t(QChar::toTitleCase(letra)), char32_t(0x03F4),
                                char32_t(0x1E9E), char32_t(0x2126), char32_t(0x212A), char32_t(0x212B)}) {
        if (Aguja::minuscula(otra) == letra)
            formas.insert(otra);
    }
    return formas;
}

/// Bytes of a letter, where all its forms take as many and differ in the last at most; absent otherwise.
std::optional<std::pair<QByteArray, QByteArray>> formasParejas(char32_t letra)
{
    const auto formas = formasDe(letra);
    const auto una = enUtf8(*formas.begin());
    const auto otra = enUtf8(*formas.rbegin());
    const bool parejas = formas.size() <= 2 && una.size() == otra.size() && una.chopped(1) == otra.chopped(1);
    return parejas ? std::optional(std::pair(una, otra)) : std::nullopt;
}

struct Letra {
    char32_t valor;
    qsizetype bytes;
};

/// The character that begins at `sitio`. A byte that begins none counts as one character that matches nothing.
Letra letraEn(const unsigned char *texto, qsizetype cuantos, qsizetype sitio)
{
    constexpr char32_t ninguna = 0xD800; // half of a pair: no text has it
    constexpr char32_t ultima = 0x10FFFF;
    const auto primero = texto[sitio];
    if (primero < 0x80)
        return {primero, 1};
    const qsizetype bytes = primero >= 0xF0 ? 4 : primero >= 0xE0 ? 3 : 2;
    if (primero < 0xC2 || primero > 0xF4 || sitio + bytes > cuantos)
        return {ninguna, 1};
    char32_t valor = primero & (0xFFU >> (bytes + 1));
    for (qsizetype i = 1; i < bytes; ++i) {
        if ((texto[sitio + i] & 0xC0U) != 0x80)
            return {ninguna, 1};
        valor = (valor << 6U) | (texto[sitio + i] & 0x3FU);
    }
    if (valor > ultima)
        return {ninguna, 1};
    return {valor, bytes};
}

/// Where the character that ends before `sitio` begins.
qsizetype anterior(const unsigned char *texto, qsizetype sitio)
{
    const auto minimo = std::max<qsizetype>(0, sitio - bytesDeUnaLetra);
    auto principio = sitio - 1;
    while (principio > minimo && (texto[principio] & 0xC0U) == 0x80)
        --principio;
    return principio;
}

// The widest vectors of the processor that it runs on.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
#define VELLORA_VECTORES __attribute__((target_clones("avx2", "default")))
#else
#define VELLORA_VECTORES
#endif

/// Whether in one of the places of a block the first byte has one of two values, and the second one of two others.
VELLORA_VECTORES bool hayPareja(const unsigned char *aqui, std::pair<unsigned char, unsigned char> unos,
                                const unsigned char *alla, std::pair<unsigned char, unsigned char> otros)
{
    unsigned char alguna = 0;
    for (qsizetype i = 0; i < bloque; ++i)
        alguna |= static_cast<unsigned char>(((aqui[i] == unos.first) | (aqui[i] == unos.second)) &
                                             ((alla[i] == otros.first) | (alla[i] == otros.second)));
    return alguna != 0;
}

} // namespace

char32_t Aguja::minuscula(char32_t letra)
{
    // What is two characters in lower case, as the capital dotted i, stays as it is.
    return QChar::toLower(letra);
}

Aguja::Aguja(const QString &texto)
{
    for (const auto como : {QString::NormalizationForm_C, QString::NormalizationForm_D}) {
        std::u32string letras;
        for (const auto letra : texto.normalized(como).toUcs4())
            letras += minuscula(letra);
        const bool ya = !formas.empty() && formas.front().letras == letras;
        if (letras.empty() || ya)
            continue;
        maximo = std::max(maximo, static_cast<qsizetype>(letras.size()) * bytesDeUnaLetra);
        formas.push_back(forma(std::move(letras)));
    }
}

Aguja::Forma Aguja::forma(std::u32string letras)
{
    Forma nueva;
    struct Posible {
        Ancla ancla;
        std::size_t rareza;
        qsizetype fin;     ///< bytes of the letters up to and with this one
        std::size_t tramo; ///< letters with another number than this one stand at no certain distance
    };
    std::vector<Posible> posibles;
    qsizetype fin = 0;
    std::size_t tramo = 0;
    for (std::size_t i = 0; i < letras.size(); ++i) {
        if (const auto parejas = formasParejas(letras[i])) {
            fin += parejas->first.size();
            const Ancla ancla{i, static_cast<unsigned char>(parejas->first.back()),
                              static_cast<unsigned char>(parejas->second.back())};
            posibles.push_back({ancla, rareza(letras[i]), fin, tramo});
        } else {
            ++tramo;
        }
    }
    nueva.letras = std::move(letras);
    std::stable_sort(posibles.begin(), posibles.end(),
                     [](const Posible &una, const Posible &otra) { return una.rareza > otra.rareza; });
    if (posibles.empty())
        return nueva;
    const auto &primera = posibles.front();
    const auto segunda = std::find_if(posibles.begin() + 1, posibles.end(),
                                      [&](const Posible &una) { return una.tramo == primera.tramo; });
    const auto &otra = segunda == posibles.end() ? primera : *segunda;
    nueva.anclas = {primera.ancla, otra.ancla};
    nueva.distancia = otra.fin - primera.fin;
    return nueva;
}

/// The needle with its letter number `letra` ending just before `sitio`: where it begins, -1 when it is not there.
qsizetype Aguja::principioDelAcierto(const Forma &forma, std::size_t letra, const unsigned char *texto,
                                     qsizetype cuantos, qsizetype sitio)
{
    auto despues = sitio;
    for (auto i = letra + 1; i < forma.letras.size(); ++i) {
        if (despues >= cuantos)
            return -1;
        const auto [valor, bytes] = letraEn(texto, cuantos, despues);
        if (minuscula(valor) != forma.letras[i])
            return -1;
        despues += bytes;
    }
    auto principio = sitio;
    for (auto i = letra + 1; i-- > 0;) {
        if (principio <= 0)
            return -1;
        const auto hasta = principio;
        principio = anterior(texto, principio);
        const auto [valor, bytes] = letraEn(texto, cuantos, principio);
        if (principio + bytes != hasta || minuscula(valor) != forma.letras[i])
            return -1;
    }
    return principio;
}

qsizetype Aguja::buscar(const Forma &forma, const unsigned char *texto, qsizetype cuantos)
{
    if (forma.anclas.empty()) {
        for (qsizetype sitio = 0; sitio < cuantos; sitio += letraEn(texto, cuantos, sitio).bytes) {
            const auto [valor, bytes] = letraEn(texto, cuantos, sitio);
            if (minuscula(valor) != forma.letras.front())
                continue;
            const auto hallado = principioDelAcierto(forma, 0, texto, cuantos, sitio + bytes);
            if (hallado >= 0)
                return hallado;
        }
        return -1;
    }
    const auto &una = forma.anclas[0];
    const auto &otra = forma.anclas[1];
    const auto esUna = [&una](unsigned char byte) {
        return (byte == una.una) | (byte == una.otra);
    };
    const auto esOtra = [&otra](unsigned char byte) {
        return (byte == otra.una) | (byte == otra.otra);
    };
    // Both anchors stand inside the text.
    const auto desde = std::max<qsizetype>(0, -forma.distancia);
    const auto hasta = cuantos - std::max<qsizetype>(0, forma.distancia);
    for (auto sitio = desde; sitio < hasta;) {
        const auto tramo = std::min(bloque, hasta - sitio);
        const auto *aqui = texto + sitio;
        const auto *alla = aqui + forma.distancia;
        if (tramo == bloque && !hayPareja(aqui, {una.una, una.otra}, alla, {otra.una, otra.otra})) {
            sitio += bloque;
            continue;
        }
        for (qsizetype i = 0; i < tramo; ++i) {
            if (!(esUna(aqui[i]) & esOtra(alla[i])))
                continue;
            const auto hallado = principioDelAcierto(forma, una.letra, texto, cuantos, sitio + i + 1);
            if (hallado >= 0)
                return hallado;
        }
        sitio += tramo;
    }
    return -1;
}

qsizetype Aguja::en(QByteArrayView texto) const
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(texto.data());
    qsizetype primero = -1;
    for (const auto &una : formas) {
        const auto hallado = buscar(una, bytes, texto.size());
        if (hallado >= 0 && (primero < 0 || hallado < primero))
            primero = hallado;
    }
    return primero;
}

bool Aguja::esta(QStringView texto) const
{
    return en(texto.toUtf8()) >= 0;
}

} // namespace vellora
