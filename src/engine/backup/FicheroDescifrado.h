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
    Cortado, ///< the backup holds fewer bytes than the phone told; those that there were have been written
    Ilegible,
    SinSitio,
    NoSeEscribe,
    Interrumpido, ///< the engine was asked to end
};

/// For the owner; empty for the two ends that write the file.
QString enPalabras(FinDeFichero fin);

/// Copies an open file of a backup into an open file, deciphered on the way when there is a key. `tamano` is its length
/// on the phone: the ciphers' padding goes beyond it. Absent: as long as it is, padding included.
/// `almacen` is the room to work in, kept from file to file; memory does not grow with the file.
FinDeFichero pasarFichero(int origen, int destino, const std::optional<Clave> &clave, std::optional<qint64> tamano,
                          std::vector<unsigned char> &almacen);

} // namespace vellora::motor
