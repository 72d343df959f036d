#include "EnlaceDispositivo.h"

#include "Flujo.h"
#include "Plist.h"
#include "Servicios.h"
#include "Telefono.h"

#include <QIODevice>
#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

const QString vacio = u"___EmptyParameterString___"_s;

// One piece of a file in the stream: u32 big-endian length of what follows, one byte that says what it is, the bytes.
constexpr qsizetype cabezaDeTramo = 5;
constexpr char tramoDeDatos = 0x0C;
constexpr char finDeFichero = 0x00;

constexpr qint64 tramoEntero = 1 << 20;
// A UNIX socket takes a write of this size as one packet, so a client that reads a head never gets half of it.
constexpr qsizetype juntosMaximo = 32 << 10;

QByteArray numero(quint32 valor)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(valor, bytes.data());
    return bytes;
}

QByteArray texto(const QString &valor)
{
    const QByteArray bytes = valor.toUtf8();
    return numero(quint32(bytes.size())) + bytes;
}

} // namespace

EnlaceDispositivo::EnlaceDispositivo(Telefono &telefono, Flujo &flujo)
    : telefono_(telefono), flujo_(flujo), bloque_(cabezaDeTramo + tramoEntero, Qt::Uninitialized)
{
    bloque_[4] = tramoDeDatos;
}

bool EnlaceDispositivo::enviar(const QVariantList &mensaje)
{
    roto_ = roto_ || !enviarPlist(flujo_, mensaje, Formato::Binario);
    return !roto_;
}

std::optional<QVariantList> EnlaceDispositivo::recibir()
{
    const auto mensaje = recibirPlist(flujo_);
    roto_ = roto_ || !mensaje || mensaje->typeId() != QMetaType::QVariantList;
    if (roto_)
        return {};
    return mensaje->toList();
}

bool EnlaceDispositivo::saludar()
{
    if (!enviar({u"DLMessageVersionExchange"_s, 300, 0}) || !recibir())
        return false;
    return enviar({u"DLMessageDeviceReady"_s});
}

bool EnlaceDispositivo::concluir(int codigo, const QString &descripcion, const QVariantMap &mas)
{
    QVariantMap cuerpo{{u"MessageName"_s, u"Response"_s}, {u"ErrorCode"_s, codigo}};
    if (!descripcion.isEmpty())
        cuerpo.insert(u"ErrorDescription"_s, descripcion);
    cuerpo.insert(mas);
    return enviar({u"DLMessageProcessMessage"_s, cuerpo});
}

std::optional<EnlaceDispositivo::Respuesta> EnlaceDispositivo::leerEstado()
{
    const auto mensaje = recibir();
    if (!mensaje || mensaje->value(0).toString() != "DLMessageStatusResponse"_L1) {
        roto_ = true;
        return {};
    }
    return Respuesta{mensaje->value(1).toLongLong(), mensaje->value(2).toString(), mensaje->value(3)};
}

std::optional<EnlaceDispositivo::Respuesta> EnlaceDispositivo::pedir(const QVariantList &orden)
{
    telefono_.averias().contarPeticion(orden[0].toString());
    if (!enviar(orden))
        return {};
    return leerEstado();
}

std::optional<quint64> EnlaceDispositivo::espacioLibre()
{
    const auto respuesta = pedir({u"DLMessageGetFreeDiskSpace"_s});
    if (!aceptado(respuesta))
        return {};
    return respuesta->valor.toULongLong();
}

std::optional<QVariantMap> EnlaceDispositivo::listar(const QString &carpeta)
{
    const auto respuesta = pedir({u"DLContentsOfDirectory"_s, carpeta});
    if (!aceptado(respuesta))
        return {};
    return respuesta->valor.toMap();
}

bool EnlaceDispositivo::crearCarpeta(const QString &carpeta)
{
    return aceptado(pedir({u"DLMessageCreateDirectory"_s, carpeta, QVariantMap()}));
}

bool EnlaceDispositivo::mover(const QVariantMap &deA, double progreso)
{
    return aceptado(pedir({u"DLMessageMoveItems"_s, deA, QVariantMap(), progreso}));
}

bool EnlaceDispositivo::borrar(const QStringList &rutas, double progreso)
{
    return aceptado(pedir({u"DLMessageRemoveItems"_s, QVariant(rutas), QVariantMap(), progreso}));
}

bool EnlaceDispositivo::empezarSubida(double progreso, quint64 bytes)
{
    telefono_.averias().contarPeticion(u"DLMessageUploadFiles"_s);
    return enviar({u"DLMessageUploadFiles"_s, QVariantMap(), progreso, bytes});
}

qint64 EnlaceDispositivo::tramoMaximo() const
{
    // On a slow cable the pieces shrink: the client looks at cancelling and at its bar only between two of them.
    const qint64 tasa = telefono_.averias().tasa(flujo_.servicio());
    return tasa > 0 ? std::clamp<qint64>(tasa / 4, 4096, tramoEntero) : tramoEntero;
}

bool EnlaceDispositivo::subir(const QString &rutaEnTelefono, const QString &rutaEnCopia, QIODevice &origen,
                              qint64 &enviados)
{
    Averias &averias = telefono_.averias();
    const bool juntar = averias.tasa(flujo_.servicio()) == 0 && !averias.hayCorte(flujo_.servicio());
    enviados = 0;
    espera_ += texto(rutaEnTelefono) + texto(rutaEnCopia);
    for (;;) {
        const qint64 n = origen.read(bloque_.data() + cabezaDeTramo, tramoMaximo());
        if (n <= 0)
            break;
        enviados += n;
        qToBigEndian(quint32(n + 1), bloque_.data());
        const bool cabe = juntar && espera_.size() + cabezaDeTramo + n + cabezaDeTramo <= juntosMaximo;
        if (cabe) {
            espera_.append(bloque_.constData(), cabezaDeTramo + n);
            continue;
        }
        if (!vaciar() || !flujo_.escribir(bloque_.constData(), cabezaDeTramo + n, Flujo::Clase::DatosDeFichero))
            return romper();
    }
    espera_ += numero(1) + finDeFichero;
    const bool pronto = !juntar || espera_.size() > juntosMaximo / 2;
    return !pronto || vaciar();
}

bool EnlaceDispositivo::vaciar()
{
    roto_ = roto_ || (!espera_.isEmpty() && !flujo_.escribir(espera_));
    espera_.clear();
    return !roto_;
}

bool EnlaceDispositivo::terminarSubida()
{
    espera_ += numero(0);
    return vaciar() && aceptado(leerEstado());
}

bool EnlaceDispositivo::subirUno(const QString &rutaEnCopia, QIODevice &origen, double progreso)
{
    qint64 enviados = 0;
    return empezarSubida(progreso, quint64(origen.size())) && subir(rutaEnCopia, rutaEnCopia, origen, enviados) &&
           terminarSubida();
}

bool EnlaceDispositivo::leerNumero(quint32 &valor)
{
    char bytes[4];
    roto_ = roto_ || !flujo_.leer(bytes, 4);
    valor = roto_ ? 0 : qFromBigEndian<quint32>(bytes);
    return !roto_;
}

bool EnlaceDispositivo::leerTexto(QString &valor)
{
    constexpr quint32 maximo = 64 << 10;
    quint32 largo = 0;
    if (!leerNumero(largo) || largo > maximo)
        return false;
    QByteArray bytes(qsizetype(largo), Qt::Uninitialized);
    roto_ = !flujo_.leer(bytes.data(), bytes.size());
    valor = QString::fromUtf8(bytes);
    return !roto_;
}

bool EnlaceDispositivo::recibirFichero(QIODevice *destino)
{
    for (;;) {
        quint32 largo = 0;
        char tipo = 0;
        if (!leerNumero(largo) || largo == 0 || !flujo_.leer(&tipo, 1))
            return romper();
        qint64 restan = qint64(largo) - 1;
        while (restan > 0) {
            const qint64 n = std::min(restan, tramoEntero);
            if (!flujo_.leer(bloque_.data(), n, Flujo::Clase::DatosDeFichero))
                return romper();
            if (tipo == tramoDeDatos && destino)
                destino->write(bloque_.constData(), n);
            restan -= n;
        }
        bloque_[4] = tramoDeDatos;
        if (tipo != tramoDeDatos)
            return true;
    }
}

std::optional<EnlaceDispositivo::Respuesta> EnlaceDispositivo::descargar(const QStringList &rutas, double progreso,
                                                                         const Apertura &abrir)
{
    telefono_.averias().contarPeticion(u"DLMessageDownloadFiles"_s);
    if (!enviar({u"DLMessageDownloadFiles"_s, QVariant(rutas), QVariantMap(), progreso}))
        return {};
    for (;;) {
        QString ruta;
        if (!leerTexto(ruta))
            return {};
        if (ruta.isEmpty())
            return leerEstado();
        if (!recibirFichero(abrir(ruta)))
            return {};
    }
}

} // namespace simulado
