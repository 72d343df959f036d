#include "engine/backup/ComprobadorDeCopia.h"

#include "core/FicheroAjeno.h"
#include "engine/Interrupcion.h"

#include <QFile>
#include <QtEndian>

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

constexpr qint64 bloque = DescifradorCbc::largoDeBloque;
constexpr qint64 pagina = 4096;
constexpr qsizetype largoDeCabeza = 112; // whole blocks, and the 100 bytes of a database's head
constexpr qsizetype maximoDeNombres = 5;
constexpr qsizetype largoDeNombre = 200;

enum class Estado { Entero, Atrasado, Cortado, SinClave };

/// Up to so many bytes from that place; fewer at the end of the file, or when it cannot be read.
QByteArray leerEn(int fichero, qint64 lugar, qsizetype largo)
{
    QByteArray bytes(largo, '\0');
    const auto leidos = pread(fichero, bytes.data(), static_cast<size_t>(largo), lugar);
    bytes.truncate(std::max<qsizetype>(leidos, 0));
    return bytes;
}

Estado segunMuestra(const QByteArray &ruta, const QByteArray &cabeza, qint64 largo, qint64 declarado)
{
    if (largo >= declarado)
        return Estado::Entero;
    const auto nombre = ruta.sliced(ruta.lastIndexOf('/') + 1);
    return pareceCortado({nombre, cabeza, largo, declarado}) ? Estado::Cortado : Estado::Atrasado;
}

/// A ciphered file by its two ends.
Estado cifrado(int fichero, qint64 largo, const Clave &clave, const CopiaAbierta::Entrada &entrada, qint64 declarado)
{
    // Nothing at all is how some phones send a file without bytes.
    if (largo == 0)
        return segunMuestra(entrada.ruta, {}, 0, declarado);
    if (largo % bloque != 0)
        return Estado::Cortado;
    // The last block needs the one before it, or nothing when it is the first.
    const auto antes = largo > bloque ? leerEn(fichero, largo - 2 * bloque, 2 * bloque) : leerEn(fichero, 0, bloque);
    auto final = antes;
    DescifradorCbc descifrador(clave);
    if (final.size() != std::min(largo, 2 * bloque) ||
        !descifrador.descifrar(reinterpret_cast<unsigned char *>(final.data()), static_cast<int>(final.size())))
        return Estado::Cortado;
    const auto relleno = largoDelRelleno(QByteArrayView(final).last(bloque));
    if (relleno == 0)
        return Estado::Cortado;
    if (largo - relleno >= declarado)
        return Estado::Entero;
    auto cabeza = leerEn(fichero, 0, std::min<qint64>(largoDeCabeza, largo));
    DescifradorCbc desdeElPrincipio(clave);
    if (!desdeElPrincipio.descifrar(reinterpret_cast<unsigned char *>(cabeza.data()), static_cast<int>(cabeza.size())))
        return Estado::Cortado;
    return segunMuestra(entrada.ruta, cabeza, largo - relleno, declarado);
}

Estado examinar(int fichero, qint64 largo, const CopiaAbierta &copia, const CopiaAbierta::Entrada &entrada,
                const DatosDeFichero &datos)
{
    if (!copia.cifrada() || datos.clave.isEmpty()) {
        const auto cabeza = largo < datos.tamano ? leerEn(fichero, 0, largoDeCabeza) : QByteArray();
        return segunMuestra(entrada.ruta, cabeza, largo, datos.tamano);
    }
    if (const auto clave = copia.claves().abrir(datos.clave))
        return cifrado(fichero, largo, *clave, entrada, datos.tamano);
    const bool deOtraClase = datos.clave.size() >= 4 &&
                             !copia.claves().porClase.contains(qFromLittleEndian<quint32>(datos.clave.constData()));
    // Its key does not open although its class does: the list is damaged there.
    return deOtraClase && largo % bloque == 0 ? Estado::SinClave : Estado::Cortado;
}

class Comprobador
{
public:
    explicit Comprobador(const CopiaAbierta &laCopia)
        : copia(laCopia)
        , carpeta(open(QFile::encodeName(laCopia.carpeta()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
    }

    void mirar(const CopiaAbierta::Entrada &entrada)
    {
        ++cuenta.ficheros;
        const auto nombre = nombreEnLaCopia(entrada.id);
        const auto fichero = nombre.isEmpty() ? Descriptor() : abrirAjeno(*carpeta, nombre);
        struct stat estado = {};
        if (!fichero || fstat(*fichero, &estado) != 0) {
            ++cuenta.ausentes;
            return nombrar(entrada);
        }
        // Two small readings, far apart: what lies between is not wanted.
        posix_fadvise(*fichero, 0, 0, POSIX_FADV_RANDOM);
        const auto datos = leerDatosDeFichero(entrada.archivo);
        contar(datos ? examinar(*fichero, estado.st_size, copia, entrada, *datos) : Estado::Cortado, entrada);
    }

    CuentaDeComprobacion cuenta;

private:
    void contar(Estado estado, const CopiaAbierta::Entrada &entrada)
    {
        if (estado == Estado::Atrasado)
            ++cuenta.atrasados;
        if (estado == Estado::SinClave)
            ++cuenta.sinClave;
        if (estado != Estado::Cortado)
            return;
        ++cuenta.cortados;
        nombrar(entrada);
    }
    void nombrar(const CopiaAbierta::Entrada &entrada)
    {
        if (cuenta.nombres.size() < maximoDeNombres)
            cuenta.nombres << QString::fromUtf8(entrada.dominio + '/' + entrada.ruta).left(largoDeNombre);
    }

    const CopiaAbierta &copia;
    Descriptor carpeta;
};

} // namespace

bool pareceCortado(const Muestra &muestra)
{
    const auto &[nombre, cabeza, largo, declarado] = muestra;
    const auto entero = [&cabeza = muestra.cabeza](qsizetype lugar) {
        return static_cast<qint64>(qFromBigEndian<quint32>(cabeza.constData() + lugar));
    };
    const auto corta = [&cabeza = muestra.cabeza](qsizetype lugar) {
        return qint64(qFromBigEndian<quint16>(cabeza.constData() + lugar));
    };
    if (largo >= declarado)
        return false;
    // Journals of databases come and go, and the file that their readers share is made anew.
    if (nombre.endsWith("-shm") || (largo == 0 && (nombre.endsWith("-wal") || nombre.endsWith("-journal"))))
        return false;
    if (cabeza.size() >= 100 && cabeza.startsWith("SQLite format 3")) {
        const auto dePagina = corta(16) == 1 ? 65536 : corta(16);
        // The number of pages holds only while it is of the same change as the rest of the head.
        if (entero(24) == entero(92))
            return largo < entero(28) * dePagina;
    }
    const bool esLog = cabeza.size() >= 32 && (entero(0) & ~1LL) == 0x377f0682;
    if (esLog && entero(8) > 0)
        return (largo - 32) % (entero(8) + 24) != 0;
    return largo % pagina == 0 || (declarado - largo) % pagina == 0;
}

CuentaDeComprobacion comprobarFicheros(const CopiaAbierta &copia, const std::function<void(qint64)> &avance)
{
    Comprobador comprobador(copia);
    auto &cuenta = comprobador.cuenta;
    cuenta.listaEntera = copia.porCadaFichero([&](const CopiaAbierta::Entrada &entrada) {
        comprobador.mirar(entrada);
        avance(cuenta.ficheros);
        return !Interrupcion::pedida();
    });
    return cuenta;
}

} // namespace vellora::motor
