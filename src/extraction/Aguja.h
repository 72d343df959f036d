#pragma once

#include <QByteArrayView>
#include <QString>

#include <string>
#include <vector>

namespace vellora
{

/// What is looked for in UTF-8 text, capitals or not; accents count. Text that writes its accents apart ("n" and a
/// tilde) is found as well. Free to use from any thread once made.
///
/// The text is never copied in lower case: the rarest letters of the needle are looked for in both their forms, in
/// loops that the compiler turns into vector instructions, and only where two of them stand at their distance is the
/// rest compared, letter by letter.
class Aguja
{
public:
    explicit Aguja(const QString &texto);

    /// Where the first match begins; -1 without one, and for a needle of nothing.
    qsizetype en(QByteArrayView texto) const;
    bool esta(QStringView texto) const;
    /// No match is longer.
    qsizetype maximoDeBytes() const { return maximo; }

    /// The character in lower case, if that is one character too.
    static char32_t minuscula(char32_t letra);

private:
    /// The last byte of a letter of the needle, in its two cases.
    struct Ancla {
        std::size_t letra = 0;
        unsigned char una = 0;
        unsigned char otra = 0;
    };

    /// One way of writing the needle.
    struct Forma {
        std::u32string letras;     ///< in lower case
        std::vector<Ancla> anclas; ///< none when no letter of it will do; else the one to look for, and a second
        qsizetype distancia = 0;   ///< in bytes, from the first anchor to the second
    };

    static Forma forma(std::u32string letras);
    static qsizetype principioDelAcierto(const Forma &forma, std::size_t letra, const unsigned char *texto,
                                         qsizetype cuantos, qsizetype sitio);
    static qsizetype buscar(const Forma &forma, const unsigned char *texto, qsizetype cuantos);

    std::vector<Forma> formas;
    qsizetype maximo = 0;
};

} // namespace vellora
