#include "Telefono.h"

#include "Flujo.h"
#include "Identidad.h"
#include "Plist.h"

#include <QDateTime>
#include <QFile>
#include <QJsonDocument>

#include <atomic>
#include <chrono>
#include <thread>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

// Numbers on the bus are never used twice in a session: a tool that kept an old one must fail, not reach another phone.
std::atomic<quint32> ultimoDispositivo = 0;
constexpr auto dominioDisco = "com.apple.disk_usage"_L1;

} // namespace

Telefono::Telefono(const AjustesTelefono &ajustes, const QString &carpeta, std::shared_ptr<const Identidad> identidad,
                   const QString &carpetaDeRegistros)
    : ajustes_(ajustes)
    , carpeta_(carpeta)
    , identidad_(identidad)
    , emparejamiento_(ajustes, identidad, carpetaDeRegistros)
    , bloqueado_(ajustes.bloqueado)
{
}

QString Telefono::cargar()
{
    if (ajustes_.ruido)
        return {};
    QFile fichero(carpeta_ + "/telefono.json"_L1);
    if (!fichero.open(QIODevice::ReadOnly))
        return u"Falta %1"_s.arg(fichero.fileName());
    const QJsonDocument documento = QJsonDocument::fromJson(fichero.readAll());
    if (!documento["dominios"_L1].isObject())
        return u"%1 no es válido"_s.arg(fichero.fileName());
    dominios_ = desdeJson(documento["dominios"_L1]).toMap();
    QVariantMap general = dominios_[QString()].toMap();
    const std::pair<QString, QString> propios[] = {{u"DeviceName"_s, ajustes_.nombre},
                                                   {u"ProductType"_s, ajustes_.producto},
                                                   {u"ProductVersion"_s, ajustes_.version}};
    for (const auto &[clave, valor] : propios) {
        if (!valor.isEmpty())
            general.insert(clave, valor);
    }
    general.insert(u"UniqueDeviceID"_s, udid());
    general.insert(u"DevicePublicKey"_s, identidad_->clavePublica());
    dominios_.insert(QString(), general);
    libre_ = dominios_[dominioDisco].toMap().value(u"AmountDataAvailable"_s, qint64(38'200'000'000)).toLongLong();
    emparejamiento_.cargar(general[u"WiFiAddress"_s].toString());
    return {};
}

QVariantMap Telefono::presencia(quint32 dispositivo, bool porRed) const
{
    QVariantMap propiedades{{u"DeviceID"_s, dispositivo}, {u"SerialNumber"_s, udid()}};
    if (porRed) {
        // A sockaddr_in of the phone on the home network, in the byte layout that the daemon hands out.
        const QByteArray direccion("\x10\x02\xf2\x7e\xc0\xa8\x01\x32\0\0\0\0\0\0\0\0", 16);
        propiedades.insert({{u"ConnectionType"_s, u"Network"_s},
                            {u"EscapedFullServiceName"_s, u"%1._apple-mobdev2._tcp.local."_s.arg(udid())},
                            {u"InterfaceIndex"_s, 2},
                            {u"NetworkAddress"_s, direccion}});
    } else {
        propiedades.insert({{u"ConnectionType"_s, u"USB"_s},
                            {u"ConnectionSpeed"_s, 480'000'000},
                            {u"LocationID"_s, int(dispositivo) << 16},
                            {u"ProductID"_s, 0x12a8}});
    }
    return {{u"MessageType"_s, u"Attached"_s}, {u"DeviceID"_s, dispositivo}, {u"Properties"_s, propiedades}};
}

void Telefono::conectar()
{
    QVariantList nuevas;
    {
        const std::lock_guard cerrojo(mutex_);
        if (!dispositivos_.isEmpty())
            return;
        if (ajustes_.porCable)
            dispositivos_.insert(++ultimoDispositivo, false);
        if (ajustes_.porRed)
            dispositivos_.insert(++ultimoDispositivo, true);
        for (auto it = dispositivos_.cbegin(); it != dispositivos_.cend(); ++it)
            nuevas.append(presencia(it.key(), it.value()));
    }
    averias_.contarEvento(u"conectado"_s);
    for (const QVariant &nueva : std::as_const(nuevas))
        anunciar_(nueva.toMap());
}

void Telefono::desconectar()
{
    QList<quint32> idos;
    {
        const std::lock_guard cerrojo(mutex_);
        idos = dispositivos_.keys();
        dispositivos_.clear();
        puertos_.clear();
        for (Flujo *flujo : flujos_)
            flujo->cortar();
    }
    codigoPuesto_.notify_all();
    if (!idos.isEmpty())
        averias_.contarEvento(u"desconectado"_s);
    for (const quint32 dispositivo : std::as_const(idos))
        anunciar_({{u"MessageType"_s, u"Detached"_s}, {u"DeviceID"_s, dispositivo}});
}

void Telefono::reiniciar(int milisegundos)
{
    averias_.contarEvento(u"reiniciado"_s);
    desconectar();
    std::thread([yo = shared_from_this(), milisegundos] {
        std::this_thread::sleep_for(std::chrono::milliseconds(milisegundos));
        yo->conectar();
    }).detach();
}

bool Telefono::conectado() const
{
    const std::lock_guard cerrojo(mutex_);
    return !dispositivos_.isEmpty();
}

QVariantList Telefono::presencias() const
{
    const std::lock_guard cerrojo(mutex_);
    QVariantList todas;
    for (auto it = dispositivos_.cbegin(); it != dispositivos_.cend(); ++it)
        todas.append(presencia(it.key(), it.value()));
    return todas;
}

bool Telefono::esSuyo(quint32 dispositivo) const
{
    const std::lock_guard cerrojo(mutex_);
    return dispositivos_.contains(dispositivo);
}

void Telefono::bloquear(bool bloqueado)
{
    {
        const std::lock_guard cerrojo(mutex_);
        bloqueado_ = bloqueado;
    }
    averias_.contarEvento(bloqueado ? u"bloqueado"_s : u"desbloqueado"_s);
}

bool Telefono::bloqueado() const
{
    const std::lock_guard cerrojo(mutex_);
    return bloqueado_;
}

QVariantMap Telefono::valores(const QString &dominio) const
{
    const std::lock_guard cerrojo(mutex_);
    QVariantMap mapa = dominios_[dominio].toMap();
    if (dominio.isEmpty()) {
        mapa.insert(u"PasswordProtected"_s, bloqueado_);
        mapa.insert(u"TimeIntervalSince1970"_s, double(QDateTime::currentMSecsSinceEpoch()) / 1000.0);
    } else if (dominio == dominioDisco) {
        const qint64 libre = discoLleno_ ? 0 : libre_;
        mapa.insert(u"AmountDataAvailable"_s, libre);
        mapa.insert(u"TotalDataAvailable"_s, libre);
    }
    return mapa;
}

void Telefono::ponerValor(const QString &dominio, const QString &clave, const QVariant &valor)
{
    const std::lock_guard cerrojo(mutex_);
    QVariantMap mapa = dominios_[dominio].toMap();
    if (valor.isValid() && !valor.isNull())
        mapa.insert(clave, valor);
    else
        mapa.remove(clave);
    dominios_.insert(dominio, mapa);
    if (dominio == dominioDisco && clave == "AmountDataAvailable"_L1)
        libre_ = valor.toLongLong();
}

qint64 Telefono::espacioLibre() const
{
    const std::lock_guard cerrojo(mutex_);
    return discoLleno_ ? 0 : libre_;
}

void Telefono::llenarDisco(bool lleno)
{
    const std::lock_guard cerrojo(mutex_);
    discoLleno_ = lleno;
}

bool Telefono::ocuparEspacio(qint64 bytes)
{
    const std::lock_guard cerrojo(mutex_);
    if (bytes > 0 && (discoLleno_ || bytes > libre_))
        return false;
    libre_ -= bytes;
    return true;
}

quint16 Telefono::abrirPuerto(const QString &servicio, bool tls)
{
    const std::lock_guard cerrojo(mutex_);
    constexpr int primero = 50001;
    constexpr int cuantos = 10'000;
    constexpr int enEspera = 1000;
    ultimoPuerto_ = quint16(primero + (ultimoPuerto_ + 1 - primero) % cuantos);
    // Numbers go round in order, so this forgets the oldest one that nobody came for, and the next is always free.
    puertos_.remove(quint16(primero + (ultimoPuerto_ - primero + cuantos - enEspera) % cuantos));
    puertos_.insert(ultimoPuerto_, {servicio, tls});
    return ultimoPuerto_;
}

std::optional<Telefono::Puerto> Telefono::tomarPuerto(quint16 puerto)
{
    const std::lock_guard cerrojo(mutex_);
    const auto it = puertos_.constFind(puerto);
    if (it == puertos_.cend())
        return {};
    const Puerto tomado = *it;
    puertos_.erase(it);
    return tomado;
}

void Telefono::ponerFlujo(Flujo *flujo)
{
    const std::lock_guard cerrojo(mutex_);
    flujos_.insert(flujo);
    // It may have been unplugged between the client's request and this moment.
    if (dispositivos_.isEmpty())
        flujo->cortar();
}

void Telefono::quitarFlujo(Flujo *flujo)
{
    const std::lock_guard cerrojo(mutex_);
    flujos_.erase(flujo);
}

} // namespace simulado
