#pragma once

#include "core/CarpetaDeDestino.h"
#include "engine/roll/Carrete.h"

namespace vellora::motor
{

/// "Borradas del iPhone.txt" in a folder of photos: what has been taken off the phone, for the owner to read. A line
/// each, added after it has gone: when, its place in the phone, its size, where its copy stands, and its SHA-256.
class ListaDeBorradas
{
public:
    static Resultado<ListaDeBorradas> abrir(const QString &carpeta);
    /// False when the line cannot be written.
    bool apuntar(const FicheroDelCarrete &fichero, const QByteArray &copia, const QByteArray &huella);

private:
    explicit ListaDeBorradas(Descriptor elFichero) : fichero(std::move(elFichero)) {}

    Descriptor fichero;
};

} // namespace vellora::motor
