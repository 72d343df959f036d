#pragma once

#include <QByteArrayView>

#include <cstddef>
#include <vector>

namespace vellora
{

/// What an object of an archive holds, as far as one value tells it: the bytes of a text or of data, else a number.
/// Lists, dictionaries and the like are `Otro`. The bytes are those of the archive.
struct ValorArchivado {
    enum Clase { Otro, Texto, Datos, Entero, Real };
    Clase clase = Otro;
    QByteArrayView bytes; ///< of a text (UTF-8, an address among them) or of data
    qint64 entero = 0;
    double real = 0;
};

/// Reads the phone's archives of objects ("typedstream", of either byte order) from their first byte to their last.
/// The first thing that cannot be sets `mal`; from then on everything reads as nothing, so that a reader may ask once,
/// at the end. Nothing is copied, and time and memory grow with the length of the archive, whatever it claims.
///
/// A number is one byte, or a mark and 2, 4 or 8 bytes. Values come in groups: a text of types, then one value each.
/// Types, class names and objects are written once; later a number points back to them.
class ArchivoDeObjetos
{
public:
    static constexpr std::size_t ninguno = static_cast<std::size_t>(-1);

    explicit ArchivoDeObjetos(QByteArrayView elArchivo) : archivo(elArchivo), presupuesto(8 * elArchivo.size() + 1024)
    {
    }

    bool mal() const { return mal_; }
    void fallar();

    void cabecera();
    /// Begins a group of exactly these types.
    void grupo(QByteArrayView tipos);
    /// A whole number; `largo` for one that has no sign.
    qint64 entero();
    quint64 largo();

    struct Principio {
        std::size_t cual = ninguno;
        bool nuevo = false; ///< its groups follow, and its end
    };
    /// Begins an object; of one that was there before, or of none, nothing follows.
    Principio empezarObjeto();
    /// True, and past it, when the object ends here, and when everything does.
    bool acaba();
    /// A whole object; `ninguno` for nil.
    std::size_t objeto();

    /// Whether the object is of that class, or of one below it.
    bool es(std::size_t objeto, QByteArrayView clase) const;
    /// Of an object that was read whole.
    const ValorArchivado &valor(std::size_t objeto) const { return cosas[objeto].valor; }

private:
    /// What later parts of the archive may point back to.
    struct Cosa {
        enum Clase { Objeto, Tipo, Cadena };
        Clase clase = Objeto;
        std::size_t suTipo = ninguno; ///< of an object: its class; of a class: the one above it
        QByteArrayView nombre;        ///< of a class
        ValorArchivado valor;
    };

    unsigned char byte();
    QByteArrayView bytes(quint64 cuantos);
    quint64 crudo(int cuantos);
    qint64 entero(unsigned char primero, bool sinSigno = false);
    double real(int cuantos);
    std::size_t indice(qint64 referencia, std::size_t cuantos);
    QByteArrayView compartida();
    QByteArrayView tiposDeGrupo();
    std::size_t apuntar(Cosa::Clase clase);
    std::size_t referencia(unsigned char primero, Cosa::Clase clase);
    std::size_t tipo();
    bool bajar();
    void cadena();
    void valores(QByteArrayView tipos, ValorArchivado &valor);
    void unValor(char tipo, ValorArchivado &valor);
    void serie(QByteArrayView tipos, ValorArchivado &valor);

    QByteArrayView archivo;
    qsizetype sitio = 0;
    qsizetype presupuesto; ///< of values and letters of types: each honest one has bytes of its own
    bool mal_ = false;
    bool alReves = false;
    int hondura = 0;
    std::vector<QByteArrayView> compartidas;
    std::vector<Cosa> cosas;
};

} // namespace vellora
