#include "EscritorDeCopia.h"

#include "Manifiesto.h"
#include "Plist.h"
#include "Telefono.h"

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QUuid>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

const QString servicioDeCopia = u"com.apple.mobilebackup2"_s;

// Where the overall percentage stands when the files begin, when they end, and after the moving.
constexpr double alEmpezar = 1.0;
constexpr double alSubir = 96.0;
constexpr double alMover = 98.0;

} // namespace

Desenlace errorDeCopia(int codigo, const QString &texto)
{
    static const QHash<int, QString> textos{{105, u"Insufficient free disk space on drive to back up"_s},
                                            {205, u"Backup is invalid"_s},
                                            {207, u"Invalid password"_s},
                                            {208, u"Device locked"_s}};
    const QString palabras = texto.isEmpty() ? textos.value(codigo, u"Unknown error"_s) : texto;
    return {codigo, u"%1 (MBErrorDomain/%2)"_s.arg(palabras).arg(codigo)};
}

EscritorDeCopia::EscritorDeCopia(Telefono &telefono, EnlaceDispositivo &enlace, const QString &destino, bool completa)
    : telefono_(telefono)
    , enlace_(enlace)
    , destino_(destino)
    , completa_(completa)
    , uuid_(QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper())
{
}

std::optional<Desenlace> EscritorDeCopia::escribir()
{
    if (!completa_ && !leerAnterior())
        return {};
    entradas_ = inventariar(telefono_.carpeta());
    // No phone is empty: its contents are gone, and going on would clear away what the computer has of them.
    if (entradas_.isEmpty())
        return errorDeCopia(1);
    for (qsizetype i = 0; i < entradas_.size(); ++i) {
        const EntradaDeCopia &entrada = entradas_[i];
        const auto antes = anterior_.constFind(entrada.id);
        const bool igual =
            antes != anterior_.cend() && antes->tamano == entrada.tamano && antes->fecha == entrada.fecha;
        if (entrada.tipo != EntradaDeCopia::Fichero || igual)
            continue;
        cambios_.append(i);
        bytesTotales_ += quint64(entrada.tamano);
    }
    if (!cabe())
        return enlace_.roto() ? std::optional<Desenlace>() : errorDeCopia(105);
    if (!prepararDestino() || !subirEstado(u"uploading"_s, alEmpezar) || !crearCarpetas())
        return enlace_.roto() ? std::optional<Desenlace>() : errorDeCopia(1);
    const auto subida = subirCambios();
    if (!subida || subida->codigo != 0)
        return subida;
    if (!subirManifiestos() || !colocar() || !limpiar() || !subirEstado(u"finished"_s, 100.0))
        return enlace_.roto() ? std::optional<Desenlace>() : errorDeCopia(1);
    return Desenlace{};
}

bool EscritorDeCopia::leerAnterior()
{
    QHash<QString, std::shared_ptr<QFile>> recibidos;
    const auto abrir = [&](const QString &rutaEnCopia) -> QIODevice * {
        const QString nombre = rutaEnCopia.section(u'/', -1);
        const auto fichero = std::make_shared<QFile>(temporal_.filePath(u"anterior-"_s + nombre));
        if (!fichero->open(QIODevice::WriteOnly | QIODevice::Truncate))
            return nullptr;
        recibidos.insert(nombre, fichero);
        return fichero.get();
    };
    const auto respuesta =
        enlace_.descargar({ruta(u"Status.plist"_s), ruta(u"Manifest.plist"_s), ruta(u"Manifest.db"_s)}, 0.0, abrir);
    if (!respuesta)
        return false;
    for (const auto &fichero : std::as_const(recibidos))
        fichero->close();
    if (respuesta->codigo != 0 || recibidos.size() != 3) {
        completa_ = true;
        return true;
    }
    // A backup that broke off says nothing sure about its files.
    QFile estado(temporal_.filePath(u"anterior-Status.plist"_s));
    const QByteArray bytes = estado.open(QIODevice::ReadOnly) ? estado.readAll() : QByteArray();
    const QString momento = leerPlist(bytes).value_or(QVariant()).toMap()[u"SnapshotState"_s].toString();
    const bool leido =
        leerManifiesto(temporal_.filePath(u"anterior-Manifest.db"_s), [this](const FilaDeManifiesto &fila) {
            if (fila.tipo == EntradaDeCopia::Fichero)
                anterior_.insert(fila.id, {fila.tamano, fila.fecha});
        });
    if (!leido || momento != "finished"_L1) {
        anterior_.clear();
        completa_ = true;
    }
    return true;
}

bool EscritorDeCopia::cabe()
{
    constexpr quint64 holgura = 1 << 20; // the manifest and the property lists
    const auto libre = enlace_.espacioLibre();
    return libre && (telefono_.ignoraEspacioDelOrdenador || *libre >= bytesTotales_ + holgura);
}

bool EscritorDeCopia::prepararDestino()
{
    const auto hay = enlace_.listar(destino_);
    if (!hay)
        return false;
    for (auto it = hay->cbegin(); it != hay->cend(); ++it) {
        if (it.key().size() == 2)
            prefijosListos_.insert(it.key());
    }
    if (hay->contains(u"Snapshot"_s) && !enlace_.borrar({ruta(u"Snapshot"_s)}, 0.0))
        return false;
    return enlace_.crearCarpeta(ruta(u"Snapshot"_s));
}

bool EscritorDeCopia::crearCarpetas()
{
    QSet<QString> prefijos;
    for (const qsizetype i : std::as_const(cambios_))
        prefijos.insert(QString::fromLatin1(entradas_[i].id.left(2)));
    for (const QString &prefijo : std::as_const(prefijos)) {
        if (!enlace_.crearCarpeta(ruta(u"Snapshot/"_s + prefijo)))
            return false;
        if (!prefijosListos_.contains(prefijo) && !enlace_.crearCarpeta(ruta(prefijo)))
            return false;
    }
    return true;
}

double EscritorDeCopia::progreso() const
{
    const double parte = bytesTotales_ > 0 ? double(bytesEnviados_) / double(bytesTotales_) : 1.0;
    return alEmpezar + (alSubir - alEmpezar) * std::min(parte, 1.0);
}

std::optional<Desenlace> EscritorDeCopia::subirCambios()
{
    // The overall percentage goes with each batch, so a small phone has small ones; each costs a round trip.
    const quint64 bytesPorTanda = std::clamp<quint64>(bytesTotales_ / 80, 64 << 10, 64 << 20);
    constexpr qsizetype ficherosPorTanda = 1000;
    const auto fallo = telefono_.averias().tomarFallo(u"Backup:tras_ficheros"_s);
    qsizetype i = 0;
    while (i < cambios_.size()) {
        quint64 bytes = 0;
        qsizetype fin = i;
        while (fin < cambios_.size() && fin - i < ficherosPorTanda && (fin == i || bytes < bytesPorTanda))
            bytes += quint64(entradas_[cambios_[fin++]].tamano);
        if (!enlace_.empezarSubida(progreso(), bytes))
            return {};
        auto desenlace = std::make_optional<Desenlace>();
        for (; i < fin && desenlace->codigo == 0; ++i) {
            desenlace = subirFichero(entradas_[cambios_[i]]);
            if (!desenlace)
                return {};
            if (fallo && ficherosEnviados_ >= fallo->trasFicheros)
                desenlace = errorDeCopia(fallo->error.toInt(), fallo->texto);
        }
        if (!enlace_.terminarSubida())
            return enlace_.roto() ? std::optional<Desenlace>() : errorDeCopia(1);
        if (desenlace->codigo != 0)
            return desenlace;
    }
    return Desenlace{};
}

std::optional<Desenlace> EscritorDeCopia::subirFichero(EntradaDeCopia &entrada)
{
    if (telefono_.averias().tocaCortarEntreFicheros(servicioDeCopia, ficherosEnviados_)) {
        enlace_.vaciar();
        telefono_.desconectar();
        return {};
    }
    QFile fichero(QFile::decodeName(entrada.origen));
    QBuffer nada;
    nada.open(QIODevice::ReadOnly);
    // Unbuffered: pieces of a megabyte go straight from the file to the socket's buffer. A file that went away since
    // the inventory leaves an empty one.
    const bool abierto = fichero.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (!abierto && fichero.exists())
        return errorDeCopia(1, u"Cannot read "_s + entrada.ruta);
    QIODevice &origen = abierto ? static_cast<QIODevice &>(fichero) : nada;
    const QString enTelefono = u"/var/mobile/"_s + entrada.dominio + u'/' + entrada.ruta;
    qint64 enviados = 0;
    if (!enlace_.subir(enTelefono, ruta(u"Snapshot/"_s + entrada.nombreEnCopia()), origen, enviados))
        return {};
    // What the manifest says is what was sent, even if the file changed on the way.
    entrada.tamano = enviados;
    bytesEnviados_ += quint64(enviados);
    ++ficherosEnviados_;
    return Desenlace{};
}

bool EscritorDeCopia::subirManifiestos()
{
    const QString rutaBase = temporal_.filePath(u"Manifest.db"_s);
    EscritorDeManifiesto manifiesto(rutaBase);
    for (const EntradaDeCopia &entrada : std::as_const(entradas_)) {
        if (!manifiesto.anadir(entrada))
            return false;
    }
    QFile base(rutaBase);
    return manifiesto.cerrar() && base.open(QIODevice::ReadOnly) &&
           subirBytes(u"Snapshot/Manifest.plist"_s, manifiestoPlist(), alSubir) &&
           enlace_.subirUno(ruta(u"Snapshot/Manifest.db"_s), base, alSubir);
}

bool EscritorDeCopia::colocar()
{
    constexpr qsizetype porTanda = 5000;
    QVariantMap tanda;
    for (const qsizetype i : std::as_const(cambios_)) {
        const QString nombre = entradas_[i].nombreEnCopia();
        tanda.insert(ruta(u"Snapshot/"_s + nombre), ruta(nombre));
        if (tanda.size() == porTanda && !enlace_.mover(std::exchange(tanda, {}), alSubir))
            return false;
    }
    for (const QString &nombre : {u"Manifest.plist"_s, u"Manifest.db"_s})
        tanda.insert(ruta(u"Snapshot/"_s + nombre), ruta(nombre));
    return enlace_.mover(tanda, alMover);
}

bool EscritorDeCopia::limpiar()
{
    constexpr qsizetype porTanda = 5000;
    QStringList sobran{ruta(u"Snapshot"_s)};
    QHash<QByteArray, Anterior> idos = anterior_;
    for (const EntradaDeCopia &entrada : std::as_const(entradas_))
        idos.remove(entrada.id);
    for (auto it = idos.cbegin(); it != idos.cend(); ++it)
        sobran.append(ruta(QString::fromLatin1(it.key().left(2) + '/' + it.key())));
    for (qsizetype i = 0; i < sobran.size(); i += porTanda) {
        if (!enlace_.borrar(sobran.mid(i, porTanda), alMover))
            return false;
    }
    return true;
}

bool EscritorDeCopia::subirBytes(const QString &nombre, const QByteArray &bytes, double avance)
{
    QBuffer origen;
    origen.setData(bytes);
    return origen.open(QIODevice::ReadOnly) && enlace_.subirUno(ruta(nombre), origen, avance);
}

bool EscritorDeCopia::subirEstado(const QString &momento, double avance)
{
    const QVariantMap estado{{u"UUID"_s, uuid_},
                             {u"IsFullBackup"_s, completa_},
                             {u"Version"_s, u"3.3"_s},
                             {u"BackupState"_s, u"new"_s},
                             {u"Date"_s, QDateTime::currentDateTimeUtc()},
                             {u"SnapshotState"_s, momento}};
    return subirBytes(u"Status.plist"_s, plistBinario(estado), avance);
}

QByteArray EscritorDeCopia::manifiestoPlist() const
{
    const QVariantMap general = telefono_.valores({});
    QVariantMap lockdown;
    for (const QString &clave : {u"BuildVersion"_s, u"DeviceName"_s, u"ProductType"_s, u"ProductVersion"_s,
                                 u"SerialNumber"_s, u"UniqueDeviceID"_s})
        lockdown.insert(clave, general.value(clave, QString()));
    lockdown.insert(u"com.apple.Accessibility"_s, QVariantMap());
    lockdown.insert(u"com.apple.MobileDeviceCrashCopy"_s, QVariantMap());
    lockdown.insert(u"com.apple.mobile.data_sync"_s, telefono_.valores(u"com.apple.mobile.data_sync"_s));
    return plistBinario(QVariantMap{{u"IsEncrypted"_s, false},
                                    {u"Version"_s, u"10.0"_s},
                                    {u"SystemDomainsVersion"_s, u"24.0"_s},
                                    {u"Date"_s, QDateTime::currentDateTimeUtc()},
                                    {u"WasPasscodeSet"_s, true},
                                    {u"Lockdown"_s, lockdown},
                                    {u"Applications"_s, QVariantMap()}});
}

} // namespace simulado
