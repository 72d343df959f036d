#include "session/EscuchaDeUsbmuxd.h"

#include "core/Plist.h"

#include <QFileInfo>
#include <QLocalSocket>
#include <QTcpSocket>
#include <QtEndian>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

// Each message: four little-endian numbers of 32 bits (length with these, version, kind, tag), then a property list.
constexpr qsizetype cabecera = 16;
constexpr quint32 versionPlist = 1;
constexpr quint32 mensajePlist = 8;
constexpr quint32 etiquetaDeEscuchar = 1;
constexpr quint32 mensajeMasLargo = 64U * 1024; // a notice takes less than one

// A file appears before its owner listens on it.
constexpr int entreIntentos = 200; // milliseconds
constexpr int intentosComoMucho = 15;

constexpr qsizetype serieSinGuion = 24;
constexpr qsizetype dondeVaElGuion = 8;

QByteArray peticionDeEscuchar()
{
    const QByteArray cuerpo =
        R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict><key>MessageType</key><string>Listen</string><key>ClientVersionString</key>)"
        R"(<string>vellora</string><key>ProgName</key><string>vellora</string><key>kLibUSBMuxVersion</key>)"
        R"(<integer>3</integer></dict></plist>)";
    const std::array<quint32, 4> campos{qToLittleEndian(static_cast<quint32>(cabecera + cuerpo.size())),
                                        qToLittleEndian(versionPlist), qToLittleEndian(mensajePlist),
                                        qToLittleEndian(etiquetaDeEscuchar)};
    return QByteArray(reinterpret_cast<const char *>(campos.data()), cabecera) + cuerpo;
}

/// What usbmuxd calls a serial number, as the tools print it.
QString udidDe(QString serie)
{
    return serie.size() == serieSinGuion ? serie.insert(dondeVaElGuion, u'-') : serie;
}

} // namespace

DireccionDeUsbmuxd direccionDeUsbmuxd()
{
    const auto dicha = qEnvironmentVariable("USBMUXD_SOCKET_ADDRESS");
    if (dicha.isEmpty())
        return {u"/var/run/usbmuxd"_s};
    if (dicha.startsWith("UNIX:"_L1))
        return {dicha.sliced(5)};
    const auto corte = dicha.lastIndexOf(u':');
    auto maquina = dicha.first(std::max<qsizetype>(corte, 0));
    if (maquina.startsWith(u'[') && maquina.endsWith(u']'))
        maquina = maquina.sliced(1, maquina.size() - 2);
    return {maquina, static_cast<quint16>(dicha.sliced(corte + 1).toUShort())};
}

EscuchaDeUsbmuxd::EscuchaDeUsbmuxd(QObject *padre) : QObject(padre)
{
    otraVez.setSingleShot(true);
    otraVez.setInterval(entreIntentos);
    connect(&otraVez, &QTimer::timeout, this, &EscuchaDeUsbmuxd::conectar);
    connect(&vigilante, &QFileSystemWatcher::directoryChanged, this, [this] {
        intentos = 0;
        if (!enchufe)
            conectar();
    });
    conectar();
}

EscuchaDeUsbmuxd::~EscuchaDeUsbmuxd()
{
    if (enchufe)
        enchufe->disconnect(this);
}

QSet<QString> EscuchaDeUsbmuxd::presentes() const
{
    return {porNumero.cbegin(), porNumero.cend()};
}

void EscuchaDeUsbmuxd::reintentar()
{
    if (enchufe || otraVez.isActive())
        return;
    intentos = intentosComoMucho; // once
    conectar();
}

void EscuchaDeUsbmuxd::conectar()
{
    const auto [donde, puerto] = direccionDeUsbmuxd();
    vigilar();
    if (puerto != 0) {
        auto *red = new QTcpSocket;
        ponEnchufe(red);
        connect(red, &QTcpSocket::connected, this, &EscuchaDeUsbmuxd::alConectar);
        connect(red, &QTcpSocket::disconnected, this, &EscuchaDeUsbmuxd::alCaer, Qt::QueuedConnection);
        connect(red, &QTcpSocket::errorOccurred, this, &EscuchaDeUsbmuxd::alCaer, Qt::QueuedConnection);
        red->connectToHost(donde, puerto);
    } else if (QFileInfo::exists(donde)) {
        auto *local = new QLocalSocket;
        ponEnchufe(local);
        connect(local, &QLocalSocket::connected, this, &EscuchaDeUsbmuxd::alConectar);
        connect(local, &QLocalSocket::disconnected, this, &EscuchaDeUsbmuxd::alCaer, Qt::QueuedConnection);
        connect(local, &QLocalSocket::errorOccurred, this, &EscuchaDeUsbmuxd::alCaer, Qt::QueuedConnection);
        local->connectToServer(donde);
    }
}

void EscuchaDeUsbmuxd::ponEnchufe(QIODevice *nuevo)
{
    enchufe.reset(nuevo);
    recibido.clear();
    connect(nuevo, &QIODevice::readyRead, this, &EscuchaDeUsbmuxd::leer);
}

void EscuchaDeUsbmuxd::alConectar()
{
    intentos = 0;
    enchufe->write(peticionDeEscuchar());
}

void EscuchaDeUsbmuxd::alCaer()
{
    if (!enchufe)
        return; // both signals tell of one end
    enchufe->disconnect(this);
    enchufe.release()->deleteLater();
    const bool habia = estado_ != Estado::SinUsbmuxd;
    estado_ = Estado::SinUsbmuxd;
    porNumero.clear();
    if (++intentos <= intentosComoMucho)
        otraVez.start();
    if (habia)
        emit cambio();
}

void EscuchaDeUsbmuxd::leer()
{
    recibido += enchufe->readAll();
    while (recibido.size() >= cabecera && estado_ != Estado::SinAvisos) {
        const auto largo = qFromLittleEndian<quint32>(recibido.constData());
        if (largo < cabecera || largo > mensajeMasLargo) {
            estado_ = Estado::SinAvisos;
            break;
        }
        if (recibido.size() < static_cast<qsizetype>(largo))
            return;
        if (!atender(recibido.sliced(cabecera, largo - cabecera)))
            estado_ = Estado::SinAvisos;
        recibido.remove(0, largo);
    }
    if (estado_ != Estado::SinAvisos)
        return;
    // It does not speak as expected: nothing of it is believed, or read, any more.
    recibido.clear();
    porNumero.clear();
}

/// False when the answer to the request was no.
bool EscuchaDeUsbmuxd::atender(const QByteArray &cuerpo)
{
    const auto mensaje = Plist::interpretar(cuerpo);
    if (!mensaje)
        return false;
    const auto raiz = mensaje->raiz();
    const auto tipo = raiz["MessageType"].texto();
    const auto numero = raiz["DeviceID"].entero().value_or(0);
    if (tipo == "Result"_L1) {
        const bool bien = raiz["Number"].entero() == 0;
        if (bien)
            estado_ = Estado::Escuchando;
        return bien;
    }
    const auto propiedades = raiz["Properties"];
    const auto serie = propiedades["SerialNumber"].texto();
    if (tipo == "Attached"_L1 && serie && propiedades["ConnectionType"].texto() == "USB"_L1) {
        porNumero.insert(numero, udidDe(*serie));
        emit llego(porNumero.value(numero));
    } else if (tipo == "Detached"_L1 ? porNumero.remove(numero) > 0
                                     : tipo == "Paired"_L1 && porNumero.contains(numero)) {
        emit cambio();
    }
    return true;
}

void EscuchaDeUsbmuxd::vigilar()
{
    const auto [donde, puerto] = direccionDeUsbmuxd();
    const auto carpeta = QFileInfo(donde).path();
    if (puerto == 0 && !vigilante.directories().contains(carpeta) && QFileInfo(carpeta).isDir())
        vigilante.addPath(carpeta);
}

} // namespace vellora
