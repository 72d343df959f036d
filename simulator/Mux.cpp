#include "Mux.h"

#include "Flujo.h"
#include "Identidad.h"
#include "Plist.h"
#include "Servicios.h"
#include "Telefono.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

// Header of each message: four little-endian u32 (length with header, version, kind, tag). Version 1 and kind 8 carry
// property lists, the only ones that today's clients send.
struct Cabecera {
    quint32 largo;
    quint32 version;
    quint32 mensaje;
    quint32 etiqueta;
};
constexpr quint32 versionPlist = 1;
constexpr quint32 mensajePlist = 8;

enum Resultado { Bien = 0, OrdenMala = 1, DispositivoMalo = 2, ConexionRechazada = 3 };

QVariantMap resultado(int numero)
{
    return {{u"MessageType"_s, u"Result"_s}, {u"Number"_s, numero}};
}

QByteArray trama(const QVariantMap &mensaje, quint32 etiqueta)
{
    const QByteArray cuerpo = plistXml(mensaje);
    const quint32 campos[] = {qToLittleEndian(quint32(sizeof(Cabecera) + cuerpo.size())), qToLittleEndian(versionPlist),
                              qToLittleEndian(mensajePlist), qToLittleEndian(etiqueta)};
    return QByteArray(reinterpret_cast<const char *>(campos), sizeof campos) + cuerpo;
}

} // namespace

Mux::Mux(std::shared_ptr<const Identidad> identidad) : identidad_(std::move(identidad)) {}

Mux::~Mux() = default;

QString Mux::escuchar(const QString &ruta)
{
    const QByteArray bytes = QFile::encodeName(ruta);
    sockaddr_un direccion{};
    direccion.sun_family = AF_UNIX;
    if (bytes.size() >= qsizetype(sizeof direccion.sun_path))
        return u"La ruta del socket es demasiado larga: %1"_s.arg(ruta);
    std::memcpy(direccion.sun_path, bytes.constData(), size_t(bytes.size()));
    escucha_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    unlink(bytes.constData());
    if (bind(escucha_, reinterpret_cast<sockaddr *>(&direccion), sizeof direccion) != 0 || listen(escucha_, 64) != 0)
        return u"No se puede escuchar en %1: %2"_s.arg(ruta, QString::fromLocal8Bit(std::strerror(errno)));
    ruta_ = ruta;
    hiloAceptar_ = std::thread([this] { aceptar(); });
    return {};
}

void Mux::aceptar()
{
    for (;;) {
        const int descriptor = accept4(escucha_, nullptr, nullptr, SOCK_CLOEXEC);
        // Without descriptors left accept fails at once, again and again, until some connection ends.
        if (descriptor < 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        const std::lock_guard cerrojo(mutex_);
        if (parando_) {
            if (descriptor >= 0)
                close(descriptor);
            return;
        }
        if (descriptor >= 0)
            empezar(std::make_shared<Flujo>(descriptor));
    }
}

void Mux::empezar(const std::shared_ptr<Flujo> &nuevo)
{
    try {
        std::thread([this, flujo = nuevo]() mutable {
            servir(flujo);
            flujo->cortar();
            const std::lock_guard fin(mutex_);
            flujos_.erase(flujo);
            flujo.reset();
            --hilos_;
            sinHilos_.notify_all();
        }).detach();
    } catch (const std::system_error &) {
        return; // no thread to be had: the stream closes with its last owner
    }
    // The thread cannot have ended yet: its end needs the mutex that is held here.
    flujos_.insert(nuevo);
    ++hilos_;
}

void Mux::parar()
{
    std::unique_lock cerrojo(mutex_);
    parando_ = true;
    shutdown(escucha_, SHUT_RDWR);
    for (const auto &flujo : flujos_)
        flujo->cortar();
    sinHilos_.wait_for(cerrojo, std::chrono::seconds(5), [this] { return hilos_ == 0; });
    cerrojo.unlock();
    hiloAceptar_.join();
    close(escucha_);
    QFile::remove(ruta_);
}

bool Mux::anadir(const std::shared_ptr<Telefono> &telefono)
{
    telefono->anunciarA([this](const QVariantMap &mensaje) { anunciar(mensaje); });
    {
        const std::lock_guard cerrojo(mutex_);
        for (const auto &otro : telefonos_) {
            if (otro->udid() == telefono->udid())
                return false;
        }
        telefonos_.push_back(telefono);
    }
    if (telefono->ajustes().conectado)
        telefono->conectar();
    return true;
}

std::shared_ptr<Telefono> Mux::buscar(const QString &udid) const
{
    const auto todos = telefonos();
    if (udid.isEmpty())
        return todos.size() == 1 ? todos.front() : nullptr;
    const auto it = std::find_if(todos.begin(), todos.end(), [&](const auto &t) { return t->udid() == udid; });
    return it != todos.end() ? *it : nullptr;
}

std::vector<std::shared_ptr<Telefono>> Mux::telefonos() const
{
    const std::lock_guard cerrojo(mutex_);
    return telefonos_;
}

void Mux::servir(const std::shared_ptr<Flujo> &flujo)
{
    while (atenderUna(flujo)) {
    }
    const std::lock_guard cerrojo(mutexOyentes_);
    std::erase_if(oyentes_, [&](const Oyente &oyente) { return oyente.flujo == flujo; });
}

bool Mux::atenderUna(const std::shared_ptr<Flujo> &flujo)
{
    constexpr quint32 maximo = 64 << 10; // a pair record, by far the largest message, takes some ten
    quint32 campos[4];
    if (!flujo->leer(reinterpret_cast<char *>(campos), sizeof campos))
        return false;
    const quint32 largo = qFromLittleEndian(campos[0]);
    const quint32 etiqueta = qFromLittleEndian(campos[3]);
    if (largo < sizeof campos || largo > maximo)
        return false;
    QByteArray cuerpo(qsizetype(largo - sizeof campos), Qt::Uninitialized);
    if (!flujo->leer(cuerpo.data(), cuerpo.size()))
        return false;
    const auto peticion = leerPlist(cuerpo).value_or(QVariant()).toMap();
    const QString tipo = peticion[u"MessageType"_s].toString();
    if (tipo == "Connect"_L1)
        return conectar(flujo, etiqueta, peticion);
    if (tipo == "Listen"_L1)
        return empezarAEscuchar(flujo, etiqueta);
    if (!flujo->escribir(trama(responder(peticion), etiqueta)))
        return false;
    if (tipo == "SavePairRecord"_L1) {
        if (const auto telefono = buscar(peticion[u"PairRecordID"_s].toString())) {
            const QVariantList presencias = telefono->presencias();
            for (const QVariant &presencia : presencias)
                anunciar({{u"MessageType"_s, u"Paired"_s}, {u"DeviceID"_s, presencia.toMap()[u"DeviceID"_s]}});
        }
    }
    return true;
}

QVariantMap Mux::responder(const QVariantMap &peticion) const
{
    const QString tipo = peticion[u"MessageType"_s].toString();
    if (tipo == "ReadBUID"_L1)
        return {{u"BUID"_s, QString::fromLatin1(identidad_->buid())}};
    if (tipo == "ListDevices"_L1) {
        QVariantList lista;
        for (const auto &telefono : telefonos())
            lista += telefono->presencias();
        return {{u"DeviceList"_s, lista}};
    }
    if (tipo == "ListListeners"_L1)
        return {{u"ListenerList"_s, QVariantList()}};
    const auto telefono = buscar(peticion[u"PairRecordID"_s].toString());
    const bool deRegistro = tipo.endsWith("PairRecord"_L1);
    if (!deRegistro)
        return resultado(OrdenMala);
    if (!telefono)
        return resultado(DispositivoMalo);
    telefono->averias().contarPeticion(tipo);
    Emparejamiento &emparejamiento = telefono->emparejamiento();
    if (tipo == "SavePairRecord"_L1) {
        emparejamiento.guardarRegistro(peticion[u"PairRecordData"_s].toByteArray());
        return resultado(Bien);
    }
    if (tipo == "DeletePairRecord"_L1) {
        emparejamiento.borrarRegistro();
        return resultado(Bien);
    }
    const QByteArray registro = emparejamiento.registro();
    return registro.isEmpty() ? resultado(DispositivoMalo) : QVariantMap{{u"PairRecordData"_s, registro}};
}

bool Mux::conectar(const std::shared_ptr<Flujo> &flujo, quint32 etiqueta, const QVariantMap &peticion)
{
    const auto dispositivo = peticion[u"DeviceID"_s].toUInt();
    // The port travels in network byte order inside a little-endian number.
    const auto puerto = qFromBigEndian(quint16(peticion[u"PortNumber"_s].toUInt()));
    const auto todos = telefonos();
    const auto it = std::find_if(todos.begin(), todos.end(), [&](const auto &t) { return t->esSuyo(dispositivo); });
    if (it == todos.end())
        return flujo->escribir(trama(resultado(DispositivoMalo), etiqueta));
    if (!(*it)->ajustes().ruido && atender(*it, puerto, *flujo, trama(resultado(Bien), etiqueta)))
        return false;
    return flujo->escribir(trama(resultado(ConexionRechazada), etiqueta));
}

bool Mux::empezarAEscuchar(const std::shared_ptr<Flujo> &flujo, quint32 etiqueta)
{
    const std::lock_guard cerrojo(mutexOyentes_);
    if (!flujo->escribir(trama(resultado(Bien), etiqueta)))
        return false;
    Oyente oyente{flujo, {}};
    for (const auto &telefono : telefonos()) {
        const QVariantList presencias = telefono->presencias();
        for (const QVariant &presencia : presencias)
            decir(oyente, presencia.toMap());
    }
    oyentes_.push_back(oyente);
    return true;
}

void Mux::decir(Oyente &oyente, const QVariantMap &mensaje)
{
    const auto dispositivo = mensaje[u"DeviceID"_s].toUInt();
    const QString tipo = mensaje[u"MessageType"_s].toString();
    if (oyente.vistos.contains(dispositivo) == (tipo == "Attached"_L1))
        return;
    if (tipo == "Attached"_L1)
        oyente.vistos.insert(dispositivo);
    if (tipo == "Detached"_L1)
        oyente.vistos.remove(dispositivo);
    oyente.flujo->escribir(trama(mensaje, 0));
}

void Mux::anunciar(const QVariantMap &mensaje)
{
    const std::lock_guard cerrojo(mutexOyentes_);
    for (Oyente &oyente : oyentes_)
        decir(oyente, mensaje);
}

} // namespace simulado
