#include "engine/backup/FicheroDescifrado.h"

#include "engine/Interrupcion.h"

#include <cerrno>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

// Large enough for the calls not to count, small enough to stay in the processor's cache; a multiple of the block. For
// larger writes Linux looks for large runs of free memory, and a virtual machine waits seconds for those.
constexpr size_t largoDeTramo = 16UL * 1024;

/// Fills the room as far as the file goes; fewer bytes than asked for mean its end, -1 a failure.
qint64 leerTramo(int origen, std::vector<unsigned char> &almacen)
{
    size_t leidos = 0;
    while (leidos < almacen.size()) {
        const auto n = read(origen, almacen.data() + leidos, almacen.size() - leidos);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return -1;
        if (n == 0)
            break;
        leidos += static_cast<size_t>(n);
    }
    return static_cast<qint64>(leidos);
}

bool escribirTodo(int destino, const unsigned char *bytes, qint64 largo)
{
    while (largo > 0) {
        const auto n = write(destino, bytes, static_cast<size_t>(largo));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        bytes += n;
        largo -= n;
    }
    return true;
}

} // namespace

QString enPalabras(FinDeFichero fin)
{
    switch (fin) {
    case FinDeFichero::Ilegible:
        return u"no se puede leer"_s;
    case FinDeFichero::SinSitio:
        return u"No queda sitio en el disco. Libera espacio y vuelve a intentarlo."_s;
    case FinDeFichero::NoSeEscribe:
        return u"No puedo escribir en la carpeta de destino."_s;
    case FinDeFichero::Interrumpido:
        return u"Interrumpido."_s;
    case FinDeFichero::Entero:
    case FinDeFichero::Cortado:
        break;
    }
    return {};
}

FinDeFichero pasarFichero(int origen, int destino, const std::optional<Clave> &clave, Relleno relleno,
                          std::vector<unsigned char> &almacen)
{
    almacen.resize(largoDeTramo);
    auto descifrador = clave ? std::optional<DescifradorCbc>(*clave) : std::nullopt;
    constexpr int bloque = DescifradorCbc::largoDeBloque;
    qint64 escritos = 0;
    int sobra = 0; // bytes of padding at the end of what has been written
    qint64 leidos = 0;
    do {
        if (Interrupcion::pedida())
            return FinDeFichero::Interrumpido;
        leidos = leerTramo(origen, almacen);
        if (leidos < 0)
            return FinDeFichero::Ilegible;
        // What is not a whole block at the end of a file that was cut cannot be deciphered.
        const auto utiles = descifrador ? leidos - leidos % bloque : leidos;
        if (descifrador && !descifrador->descifrar(almacen.data(), static_cast<int>(utiles)))
            return FinDeFichero::Ilegible;
        if (!escribirTodo(destino, almacen.data(), utiles))
            return errno == ENOSPC || errno == EDQUOT || errno == EFBIG ? FinDeFichero::SinSitio
                                                                        : FinDeFichero::NoSeEscribe;
        escritos += utiles;
        if (utiles >= bloque)
            sobra = largoDelRelleno({almacen.data() + utiles - bloque, bloque});
        if (utiles != leidos)
            sobra = 0;
    } while (leidos == static_cast<qint64>(almacen.size()));
    if (!descifrador || relleno == Relleno::Dejar)
        return FinDeFichero::Entero;
    if (sobra == 0)
        return FinDeFichero::Cortado;
    return ftruncate(destino, escritos - sobra) == 0 ? FinDeFichero::Entero : FinDeFichero::NoSeEscribe;
}

} // namespace vellora::motor
