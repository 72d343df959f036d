#include "EscritorDeCopia.h"

#include "Cifra.h"
#include "ContenidoDeCopia.h"
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

EscritorDeCopia::EscritorDeCopia(Telefono &telefono, EnlaceDispositivo &enlace, const QString &destino, bool completa,
                                 std::optional<LlavesDeCopia> llaves)
    : telefono_(telefono)
    , enlace_(enlace)
    , destino_(destino)
    , completa_(completa)
    , llaves_(std::move(llaves))
    , uuid_(QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper())
{
}

std::optional<Desenlace> EscritorDeCopia::escribir()
{
    if (!completa_ && !leerAnterior())
        return {};
    entradas_ = entradasDeCopia(telefono_.carpeta(), llaves_, temporal_.path());
    // No phone is empty: its contents are gone, and going on would clear away what the computer has of them.
    if (entradas_.isEmpty())
        return errorDeCopia(1);
    for (qsizetype i = 0; i < entradas_.size(); ++i) {
        EntradaDeCopia &entrada = entradas_[i];
        const auto antes = anterior_.constFind(entrada.id);
        const bool igual =
            antes != anterior_.cend() && antes->tamano == entrada.tamano && antes->fecha == entrada.fecha;
        if (igual)
            entrada.clave = antes->clave;
        ponClave(entrada, llaves_);
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
    const bool leido =
        valeLoAnterior() &&
        leerManifiesto(temporal_.filePath(u"anterior-Manifest.db"_s), [this](const FilaDeManifiesto &fila) {
            if (fila.tipo == EntradaDeCopia::Fichero)
                anterior_.insert(fila.id, {fila.tamano, fila.fecha, fila.clave});
        });
    if (!leido) {
        anterior_.clear();
        completa_ = true;
    }
    return true;
}

bool EscritorDeCopia::valeLoAnterior()
{
    const auto leer = [this](const QString &nombre) {
        QFile fichero(temporal_.filePath(u"anterior-"_s + nombre));
        const QByteArray bytes = fichero.open(QIODevice::ReadOnly) ? fichero.readAll() : QByteArray();
        return leerPlist(bytes).value_or(QVariant()).toMap();
    };
    // A backup that broke off says nothing sure about its files.
    if (leer(u"Status.plist"_s)[u"SnapshotState"_s].toString() != "finished"_L1)
        return false;
    const QVariantMap manifiesto = leer(u"Manifest.plist"_s);
    if (!llaves_)
        return !manifiesto[u"IsEncrypted"_s].toBool();
    // Files under other keys are of no use beside new ones.
    const auto clave = llaves_->desenvolver(manifiesto[u"ManifestKey"_s].toByteArray());
    if (!clave || manifiesto[u"BackupKeyBag"_s].toByteArray() != llaves_->bolsa())
        return false;
    return descifrarEnSitio(temporal_.filePath(u"anterior-Manifest.db"_s), *clave);
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
    const QString enCopia = ruta(u"Snapshot/"_s + entrada.nombreEnCopia());
    qint64 enviados = 0;
    if (llaves_) {
        LectorCifrado cifrado(origen, llaves_->desenvolver(entrada.clave).value_or(QByteArray(32, '\0')));
        if (!enlace_.subir(enTelefono, enCopia, cifrado, enviados))
            return {};
        enviados = cifrado.leidos();
    } else if (!enlace_.subir(enTelefono, enCopia, origen, enviados)) {
        return {};
    }
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
    const QByteArray clave = alAzar(32);
    const QByteArray plist =
        manifiestoPlist(telefono_.valores({}), telefono_.valores(u"com.apple.mobile.data_sync"_s), llaves_, clave);
    if (!manifiesto.cerrar() || !base.open(QIODevice::ReadOnly) ||
        !subirBytes(u"Snapshot/Manifest.plist"_s, plist, alSubir))
        return false;
    if (!llaves_)
        return enlace_.subirUno(ruta(u"Snapshot/Manifest.db"_s), base, alSubir);
    LectorCifrado cifrada(base, clave);
    return enlace_.subirUno(ruta(u"Snapshot/Manifest.db"_s), cifrada, alSubir);
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
    return subirBytes(u"Status.plist"_s, estadoPlist(uuid_, completa_, momento), avance);
}

} // namespace simulado
