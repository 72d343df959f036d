#include "Flujo.h"
#include "ProtocoloAfc.h"
#include "ServicioAfc.h"
#include "Telefono.h"

#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

// The operations of the file service on open files.
namespace simulado
{
using namespace afc;

bool SesionAfc::atenderManejador(Paquete &paquete)
{
    const quint64 manejador = numeroEn(paquete.datos, 0);
    const auto it = abiertos_.constFind(manejador);
    if (it == abiertos_.cend() && paquete.carga == 0)
        return estado(paquete, AfcArgumentoMalo);
    const int descriptor = it != abiertos_.cend() ? *it : -1;
    switch (paquete.operacion) {
    case Leer:
        return leer(paquete, descriptor);
    case Escribir:
        return escribir(paquete, descriptor);
    case Situar:
        return hecho(paquete,
                     lseek(descriptor, qint64(numeroEn(paquete.datos, 16)), int(numeroEn(paquete.datos, 8))) >= 0);
    case Situacion: {
        QByteArray posicion(8, Qt::Uninitialized);
        qToLittleEndian(quint64(lseek(descriptor, 0, SEEK_CUR)), posicion.data());
        return responder(paquete, Situado, posicion);
    }
    case Cerrar:
        abiertos_.remove(manejador);
        return hecho(paquete, close(descriptor) == 0);
    case CambiarTamano:
        return cambiarTamano(paquete, descriptor, qint64(numeroEn(paquete.datos, 8)));
    case Cerrojo:
        return cerrojo(paquete, descriptor);
    default:
        return estado(paquete, AfcDesconocido);
    }
}

bool SesionAfc::leer(const Paquete &paquete, int descriptor)
{
    constexpr quint64 maximo = 16 << 20;
    const quint64 pedidos = std::min(numeroEn(paquete.datos, 8), maximo);
    // Head and data in one buffer, so that they leave in one write without a second copy.
    QByteArray trama(largoCabecera + qsizetype(pedidos), Qt::Uninitialized);
    const ssize_t n = read(descriptor, trama.data() + largoCabecera, size_t(pedidos));
    if (n < 0)
        return hecho(paquete, false);
    trama.truncate(largoCabecera + n);
    std::copy_n(marca, 8, trama.data());
    qToLittleEndian(quint64(trama.size()), trama.data() + 8);
    qToLittleEndian(quint64(largoCabecera), trama.data() + 16);
    qToLittleEndian(paquete.numero, trama.data() + 24);
    qToLittleEndian(quint64(Datos), trama.data() + 32);
    return flujo_.escribir(trama, Flujo::Clase::DatosDeFichero);
}

bool SesionAfc::escribir(Paquete &paquete, int descriptor)
{
    constexpr qint64 pieza = 1 << 20;
    QByteArray bloque(std::min(paquete.carga, pieza), Qt::Uninitialized);
    quint64 codigo = descriptor < 0 ? AfcArgumentoMalo : AfcBien;
    while (paquete.carga > 0) {
        const qint64 n = std::min(paquete.carga, pieza);
        if (!flujo_.leer(bloque.data(), n, Flujo::Clase::DatosDeFichero))
            return false;
        paquete.carga -= n;
        if (codigo != AfcBien)
            continue;
        struct stat ficha {
        };
        fstat(descriptor, &ficha);
        const bool alFinal = (fcntl(descriptor, F_GETFL) & O_APPEND) != 0;
        const qint64 posicion = alFinal ? ficha.st_size : lseek(descriptor, 0, SEEK_CUR);
        const qint64 crece = std::max<qint64>(0, posicion + n - ficha.st_size);
        if (telefono_.espacioLibre() <= 0 || !telefono_.ocuparEspacio(crece))
            codigo = AfcSinSitio;
        else if (write(descriptor, bloque.constData(), size_t(n)) != n)
            codigo = estadoDeErrno(errno);
    }
    return estado(paquete, codigo);
}

bool SesionAfc::cambiarTamano(const Paquete &paquete, int descriptor, qint64 tamano)
{
    struct stat ficha {
    };
    fstat(descriptor, &ficha);
    if (!telefono_.ocuparEspacio(tamano - ficha.st_size))
        return estado(paquete, AfcSinSitio);
    return hecho(paquete, ftruncate(descriptor, tamano) == 0);
}

bool SesionAfc::truncar(const Paquete &paquete, const QByteArray &ruta)
{
    const int descriptor = raiz_.abrir(ruta, O_WRONLY);
    if (descriptor < 0)
        return hecho(paquete, false);
    const bool enviado = cambiarTamano(paquete, descriptor, qint64(numeroEn(paquete.datos, 0)));
    close(descriptor);
    return enviado;
}

bool SesionAfc::cerrojo(const Paquete &paquete, int descriptor)
{
    // The operation numbers are those of flock(2): 1 shared, 2 exclusive, 4 do not wait, 8 unlock. Never wait: a client
    // that asked to wait would hang the whole connection.
    const auto operacion = int(numeroEn(paquete.datos, 8)) | LOCK_NB;
    return hecho(paquete, flock(descriptor, operacion) == 0);
}

} // namespace simulado
