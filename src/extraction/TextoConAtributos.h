#pragma once

#include "extraction/ArchivoDeObjetos.h"

#include <optional>

namespace vellora
{

/// A text with attributes as the phone archives one, for instance the body of a message: the words, and the runs into
/// which they fall. Nothing is copied: all views point into the archive and are good as long as its bytes are.
struct TextoConAtributos {
    struct Atributo {
        QByteArrayView nombre;
        ValorArchivado valor;
    };
    /// So many UTF-16 units of the text, one run after the other, and which of `atributos` they have.
    struct Tramo {
        quint64 largo = 0;
        std::size_t atributos = 0;
    };

    QByteArrayView texto; ///< in UTF-8, as it is stored: nobody has checked it
    std::vector<Tramo> tramos;
    std::vector<std::vector<Atributo>> atributos;
    /// The archive was read to its end. Otherwise it is damaged behind the text, and the runs stop before their time.
    bool entero = false;

    /// Reads an archive whose root is an NSAttributedString, mutable or not. Absent when it is something else, or is
    /// damaged before the end of the text; one of more than 16 MiB is refused. Any thread.
    ///
    /// The form has been worked out from bodies of real messages; the test holds two that show its parts.
    static std::optional<TextoConAtributos> leer(QByteArrayView archivo);
};

} // namespace vellora
