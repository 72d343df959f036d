#pragma once

#include "engine/roll/PruebaDeCopia.h"

namespace vellora::motor
{

/// "Borradas del iPhone.txt" in a folder of photos: what has been taken off the phone, for the owner to read. A line
/// each, on the disk before the file goes: when, its place in the phone, its size, where its copy stands, and its
/// SHA-256. A file that did not go after all has a second line that ends with "NO SE BORRÓ".
class ListaDeBorradas
{
public:
    static Resultado<ListaDeBorradas> abrir(const QString &carpeta);

    struct Linea {
        const FicheroDelCarrete *fichero;
        PruebaDeCopia::Copia copia;
    };
    /// Adds what is about to go. False when it is not on the disk: then nothing may go.
    bool apuntar(const std::vector<Linea> &lineas);
    /// Adds that it is still in the phone.
    void apuntarQueSigue(const Linea &linea);

private:
    explicit ListaDeBorradas(Descriptor elFichero) : fichero(std::move(elFichero)) {}
    bool escribir(const QByteArray &texto);

    Descriptor fichero;
};

} // namespace vellora::motor
