#include "ServicioAfc.h"

#include "Flujo.h"
#include "ProtocoloAfc.h"
#include "Servicios.h"
#include "Telefono.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace simulado
{
using namespace afc;

namespace
{

QString nombreDe(quint64 operacion)
{
    static const QHash<quint64, QString> nombres{{LeerCarpeta, u"ReadDir"_s},
                                                 {Truncar, u"Truncate"_s},
                                                 {Borrar, u"Remove"_s},
                                                 {CrearCarpeta, u"MakeDir"_s},
                                                 {Ficha, u"GetFileInfo"_s},
                                                 {DelAparato, u"DeviceInfo"_s},
                                                 {Abrir, u"Open"_s},
                                                 {Leer, u"Read"_s},
                                                 {Escribir, u"Write"_s},
                                                 {Situar, u"Seek"_s},
                                                 {Situacion, u"Tell"_s},
                                                 {Cerrar, u"Close"_s},
                                                 {CambiarTamano, u"SetSize"_s},
                                                 {Renombrar, u"Rename"_s},
                                                 {Cerrojo, u"Lock"_s},
                                                 {Enlazar, u"Link"_s},
                                                 {PonerFecha, u"SetTime"_s},
                                                 {BorrarArbol, u"RemoveTree"_s}};
    return nombres.value(operacion, u"Afc%1"_s.arg(operacion));
}

QByteArray textoEn(const QByteArray &datos, qsizetype posicion)
{
    return datos.size() > posicion ? QByteArray(datos.constData() + posicion) : QByteArray();
}

QByteArray bytesDe(quint64 numero)
{
    QByteArray bytes(8, Qt::Uninitialized);
    qToLittleEndian(numero, bytes.data());
    return bytes;
}

/// Where in an operation's data its path stands; -1 when it works on an open file.
qsizetype posicionDeRuta(quint64 operacion)
{
    switch (operacion) {
    case Abrir:
    case Enlazar:
    case PonerFecha:
    case Truncar:
        return 8;
    case LeerCarpeta:
    case Borrar:
    case CrearCarpeta:
    case Ficha:
    case Renombrar:
    case BorrarArbol:
        return 0;
    default:
        return -1;
    }
}

} // namespace

SesionAfc::SesionAfc(Telefono &telefono, Flujo &flujo, const QByteArray &raiz)
    : telefono_(telefono), flujo_(flujo), raiz_(raiz)
{
}

SesionAfc::~SesionAfc()
{
    // Closing a descriptor frees its lock too, as the phone does when a client vanishes.
    for (const int descriptor : std::as_const(abiertos_))
        close(descriptor);
}

void SesionAfc::servir()
{
    Paquete paquete;
    while (recibir(paquete) && atender(paquete)) {
    }
}

bool SesionAfc::recibir(Paquete &paquete)
{
    constexpr quint64 maximaCabeza = 1 << 20;
    char cabecera[largoCabecera];
    if (!flujo_.leer(cabecera, largoCabecera) || std::memcmp(cabecera, marca, 8) != 0)
        return false;
    const auto entero = qFromLittleEndian<quint64>(cabecera + 8);
    const auto propio = qFromLittleEndian<quint64>(cabecera + 16);
    if (propio < quint64(largoCabecera) || entero < propio || propio > maximaCabeza)
        return false;
    const quint64 carga = entero - propio;
    paquete.numero = qFromLittleEndian<quint64>(cabecera + 24);
    paquete.operacion = qFromLittleEndian<quint64>(cabecera + 32);
    // Only a write streams its payload; what others put there is little, and belongs to their data.
    const bool fluye = paquete.operacion == Escribir;
    if (carga > (fluye ? quint64(std::numeric_limits<qint64>::max()) : maximaCabeza))
        return false;
    paquete.carga = qint64(carga);
    paquete.datos.resize(qsizetype(propio) - largoCabecera);
    if (!flujo_.leer(paquete.datos.data(), paquete.datos.size()))
        return false;
    if (fluye || paquete.carga == 0)
        return true;
    QByteArray resto(paquete.carga, Qt::Uninitialized);
    paquete.carga = 0;
    const bool bien = flujo_.leer(resto.data(), resto.size());
    paquete.datos += resto;
    return bien;
}

bool SesionAfc::descartar(qint64 bytes)
{
    constexpr qint64 pieza = 1 << 20;
    QByteArray sobra(std::min(bytes, pieza), Qt::Uninitialized);
    for (; bytes > 0; bytes -= std::min(bytes, pieza)) {
        if (!flujo_.leer(sobra.data(), std::min(bytes, pieza)))
            return false;
    }
    return true;
}

bool SesionAfc::responder(const Paquete &paquete, quint64 tipo, const QByteArray &cabeza, const QByteArray &carga)
{
    QByteArray trama(marca, 8);
    trama += bytesDe(quint64(largoCabecera + cabeza.size() + carga.size()));
    trama += bytesDe(quint64(largoCabecera + cabeza.size()));
    trama += bytesDe(paquete.numero) + bytesDe(tipo) + cabeza + carga;
    return flujo_.escribir(trama);
}

bool SesionAfc::estado(const Paquete &paquete, quint64 codigo)
{
    return responder(paquete, Estado, bytesDe(codigo));
}

bool SesionAfc::hecho(const Paquete &paquete, bool bien)
{
    return estado(paquete, bien ? AfcBien : estadoDeErrno(errno));
}

bool SesionAfc::atender(Paquete &paquete)
{
    Averias &averias = telefono_.averias();
    const QString nombre = nombreDe(paquete.operacion);
    averias.contarPeticion(u"afc:"_s + nombre);
    const qsizetype posicion = posicionDeRuta(paquete.operacion);
    auto fallo = averias.tomarFallo(u"afc:"_s + nombre);
    if (!fallo && posicion >= 0)
        fallo = averias.tomarFallo(nombre + u':' + QFile::decodeName(textoEn(paquete.datos, posicion)));
    if (fallo)
        return descartar(paquete.carga) && estado(paquete, fallo->error.toULongLong());
    if (paquete.operacion == DelAparato)
        return delAparato(paquete);
    return posicion >= 0 ? atenderRuta(paquete) : atenderManejador(paquete);
}

bool SesionAfc::atenderRuta(const Paquete &paquete)
{
    const QByteArray ruta = textoEn(paquete.datos, posicionDeRuta(paquete.operacion));
    switch (paquete.operacion) {
    case LeerCarpeta: {
        const auto nombres = raiz_.listar(ruta);
        return nombres ? responder(paquete, Datos, {}, nombres->join('\0') + '\0') : hecho(paquete, false);
    }
    case Ficha:
        return fichaDe(paquete, ruta);
    case Abrir:
        return abrir(paquete);
    case Truncar:
        return truncar(paquete, ruta);
    case Borrar:
        return borrar(paquete, ruta);
    case BorrarArbol:
        return hecho(paquete, raiz_.borrarArbol(ruta));
    case CrearCarpeta:
        return telefono_.espacioLibre() > 0 ? hecho(paquete, raiz_.crearCarpeta(ruta)) : estado(paquete, AfcSinSitio);
    case Renombrar:
        return hecho(paquete, raiz_.renombrar(ruta, textoEn(paquete.datos, ruta.size() + 1)));
    case Enlazar: {
        constexpr quint64 simbolico = 2;
        const QByteArray nueva = textoEn(paquete.datos, 8 + ruta.size() + 1);
        return hecho(paquete, raiz_.enlazar(ruta, nueva, numeroEn(paquete.datos, 0) == simbolico));
    }
    default:
        return hecho(paquete, raiz_.ponerFecha(ruta, numeroEn(paquete.datos, 0)));
    }
}

bool SesionAfc::fichaDe(const Paquete &paquete, const QByteArray &ruta)
{
    struct stat ficha {
    };
    if (!raiz_.ficha(ruta, ficha))
        return hecho(paquete, false);
    const qint64 fecha = ficha.st_mtim.tv_sec * 1'000'000'000LL + ficha.st_mtim.tv_nsec;
    QByteArrayList pares{
        "st_size",      QByteArray::number(qint64(ficha.st_size)),
        "st_blocks",    QByteArray::number(qint64(ficha.st_blocks)),
        "st_nlink",     QByteArray::number(quint64(ficha.st_nlink)),
        "st_ifmt",      S_ISDIR(ficha.st_mode) ? "S_IFDIR" : S_ISLNK(ficha.st_mode) ? "S_IFLNK" : "S_IFREG",
        "st_mtime",     QByteArray::number(fecha),
        "st_birthtime", QByteArray::number(raiz_.nacimiento(ruta).value_or(fecha))};
    if (S_ISLNK(ficha.st_mode))
        pares << "LinkTarget" << raiz_.destinoDeEnlace(ruta);
    return responder(paquete, Datos, {}, pares.join('\0') + '\0');
}

bool SesionAfc::delAparato(const Paquete &paquete)
{
    const auto total = telefono_.valores(u"com.apple.disk_usage"_s).value(u"TotalDiskCapacity"_s, 0).toULongLong();
    const QByteArrayList pares{"Model",        telefono_.valores({})[u"ProductType"_s].toString().toUtf8(),
                               "FSTotalBytes", QByteArray::number(total),
                               "FSFreeBytes",  QByteArray::number(telefono_.espacioLibre()),
                               "FSBlockSize",  "4096"};
    return responder(paquete, Datos, {}, pares.join('\0') + '\0');
}

bool SesionAfc::abrir(const Paquete &paquete)
{
    constexpr int modos[] = {0,
                             O_RDONLY,
                             O_RDWR | O_CREAT,
                             O_WRONLY | O_CREAT | O_TRUNC,
                             O_RDWR | O_CREAT | O_TRUNC,
                             O_WRONLY | O_CREAT | O_APPEND,
                             O_RDWR | O_CREAT | O_APPEND};
    const quint64 modo = numeroEn(paquete.datos, 0);
    if (modo < 1 || modo >= std::size(modos))
        return estado(paquete, AfcArgumentoMalo);
    const QByteArray ruta = textoEn(paquete.datos, 8);
    struct stat ficha {
    };
    const bool existe = raiz_.ficha(ruta, ficha);
    if (existe && S_ISDIR(ficha.st_mode))
        return estado(paquete, AfcEsCarpeta);
    if (!existe && modo > 1 && telefono_.espacioLibre() <= 0)
        return estado(paquete, AfcSinSitio);
    const int descriptor = raiz_.abrir(ruta, modos[modo]);
    if (descriptor < 0)
        return hecho(paquete, false);
    if (existe && (modos[modo] & O_TRUNC))
        telefono_.ocuparEspacio(-ficha.st_size);
    abiertos_.insert(++ultimoManejador_, descriptor);
    return responder(paquete, Abierto, bytesDe(ultimoManejador_));
}

bool SesionAfc::borrar(const Paquete &paquete, const QByteArray &ruta)
{
    struct stat ficha {
    };
    const bool existe = raiz_.ficha(ruta, ficha);
    const bool borrado = raiz_.borrar(ruta);
    if (borrado && existe && S_ISREG(ficha.st_mode))
        telefono_.ocuparEspacio(-ficha.st_size);
    return hecho(paquete, borrado);
}

void servirAfcEn(Telefono &telefono, Flujo &flujo, const QString &raiz)
{
    SesionAfc(telefono, flujo, QFile::encodeName(raiz)).servir();
}

void servirAfc(Telefono &telefono, Flujo &flujo)
{
    servirAfcEn(telefono, flujo, telefono.carpeta() + "/media"_L1);
}

} // namespace simulado
