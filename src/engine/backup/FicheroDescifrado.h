#pragma once

#include "engine/backup/Cifra.h"

#include <QString>

#include <optional>
#include <vector>

namespace vellora::motor
{

/// How the passage of a file out of a backup ended.
enum class FinDeFichero {
    Entero,
    Cortado, ///< the ciphered file breaks off; what there was of it has been written
    Ilegible,
    SinSitio,
    NoSeEscribe,
    Interrumpido, ///< the engine was asked to end
};

/// For the owner; empty for the two ends that write the file.
QString enPalabras(FinDeFichero fin);

/// What to do with the padding at the end of a ciphered file. The list of files has none to be sure of, and SQLite does
/// not mind it.
enum class Relleno { Quitar, Dejar };

/// Copies an open file of a backup to the beginning of an open and empty one, deciphered on the way when there is a
/// key. Its length is what the ciphers say: the one in the list is often that of another moment, above all for
/// databases. `almacen` is the room to work in, kept from file to file; memory does not grow with the file.
FinDeFichero pasarFichero(int origen, int destino, const std::optional<Clave> &clave, Relleno relleno,
                          std::vector<unsigned char> &almacen);

} // namespace vellora::motor
