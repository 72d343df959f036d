#include "session/Modelo.h"

#include "core/CarpetaDeTrabajo.h"
#include "core/CarpetaPrivada.h"
#include "core/Formato.h"
#include "core/Preferencias.h"
#include "core/SegundoPlano.h"
#include "platform/GestorDeArchivos.h"
#include "session/Carpetas.h"
#include "session/Detector.h"
#include "session/Migracion.h"
#include "session/SinTelefono.h"
#include "session/Vigia.h"

#include <QDir>
#include <QStorageInfo>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto claveConocidos = u"iPhonesConocidos"_s;
constexpr qint64 margenDeDisco = 2'000'000'000;

/// What a failed tool did not tell this time is kept from the reading before.
Dispositivo fundir(Dispositivo fresco, const Dispositivo *anterior)
{
    if (anterior == nullptr)
        return fresco;
    if (!fresco.bateria)
        fresco.bateria = anterior->bateria;
    if (!fresco.libresBytes)
        fresco.libresBytes = anterior->libresBytes;
    if (!fresco.totalBytes)
        fresco.totalBytes = anterior->totalBytes;
    if (fresco.modeloCrudo == "desconocido"_L1)
        fresco.modeloCrudo = anterior->modeloCrudo;
    return fresco;
}

} // namespace

Modelo::Modelo(QObject *padre) : QObject(padre)
{
    Migracion::alArrancar(); // before the journal reads its file
    ponerEnOrden();
    diario_ = std::make_unique<Diario>();
    tarea_ = std::make_unique<Tarea>(*diario_);
    connect(tarea_.get(), &Tarea::cambio, this, &Modelo::cambio);
    connect(this, &Modelo::cambioDeSesion, this, &Modelo::cambio);
    vigia = std::make_unique<Vigia>(*tarea_);
    connect(vigia.get(), &Vigia::toca, this, [this] { refrescar(true); });
    refrescar(false);
}

Modelo::~Modelo() = default;

/// What older versions and killed runs left as it should not be.
void Modelo::ponerEnOrden()
{
    const auto ordenar = [falta = SinTelefono::faltaCerrar()] {
        CarpetaDeTrabajo::quitarMuertas();
        SinTelefono::cerrarALosDemas(falta);
        // Small pictures are the cache's by now.
        CarpetaPrivada::quitar(QDir::homePath() + u"/Vellora/.miniaturas"_s);
        return true;
    };
    enSegundoPlano(this, ordenar, [](bool) { SinTelefono::yaCerrado(); });
}

void Modelo::refrescar(bool silencioso)
{
    if (!silencioso && !buscando_) {
        buscando_ = true;
        emit cambioDeSesion();
    }
    const auto antes = seleccionado_ ? std::optional(seleccionado_->id) : std::nullopt;
    vigia->empieza();
    enSegundoPlano(this, Detector::leerTodos, [this, antes](const Detector::Lectura &lectura) {
        ponCallados(lectura.callados);
        aplicar(lectura.leidos, antes);
        vigia->acaba(lectura);
    });
}

void Modelo::aplicar(const QList<Dispositivo> &leidos, const std::optional<QString> &antes)
{
    QList<Dispositivo> fundidos;
    for (const auto &fresco : leidos)
        fundidos << fundir(fresco, conUdid(fresco.id));
    // A view that is told of a change makes its rows anew, so it is told of true ones only.
    const auto visto = std::tuple(dispositivos_, seleccionado_, iPhoneNuevo_, buscando_, avisoAcceso_);
    dispositivos_ = fundidos;
    buscando_ = false;
    for (const auto &uno : dispositivos_)
        nombres[uno.id] = uno.nombre;
    elegirTrasRefrescar(antes);
    if (seleccionado_)
        SinTelefono::recordar(QFileInfo(carpetaBase()).fileName());
    // One that left before its welcome was answered makes room for the next one's.
    if (iPhoneNuevo_ && conUdid(iPhoneNuevo_->id) == nullptr)
        iPhoneNuevo_.reset();
    if (seleccionado_ && !iPhoneNuevo_ && !esConocido(seleccionado_->id))
        iPhoneNuevo_ = seleccionado_;
    if (visto != std::tuple(dispositivos_, seleccionado_, iPhoneNuevo_, buscando_, avisoAcceso_))
        emit cambioDeSesion();
    emit refrescado(antes);
}

void Modelo::elegirTrasRefrescar(const std::optional<QString> &antes)
{
    // What is selected now goes before what was: the owner may have chosen while the reading ran.
    const auto *elegido = seleccionado_ ? conUdid(seleccionado_->id) : nullptr;
    if (elegido == nullptr && antes)
        elegido = conUdid(*antes);
    if (elegido == nullptr && !dispositivos_.isEmpty())
        elegido = &dispositivos_.constFirst();
    elegir(elegido != nullptr ? std::optional(*elegido) : std::nullopt);
}

void Modelo::elegir(const std::optional<Dispositivo> &cual)
{
    if (seleccionado_ && (!cual || cual->id != seleccionado_->id))
        avisoAcceso_.reset(); // it spoke of the other one
    seleccionado_ = cual;
}

void Modelo::seleccionar(const QString &udid)
{
    const auto *elegido = conUdid(udid);
    if (elegido == nullptr)
        return;
    const bool otro = !seleccionado_ || seleccionado_->id != udid;
    elegir(*elegido);
    emit cambioDeSesion();
    if (otro)
        emit elegidoOtro();
}

const Dispositivo *Modelo::conUdid(const QString &udid) const
{
    const auto hallado = std::find_if(dispositivos_.cbegin(), dispositivos_.cend(),
                                      [&](const Dispositivo &uno) { return uno.id == udid; });
    return hallado == dispositivos_.cend() ? nullptr : &*hallado;
}

bool Modelo::esConocido(const QString &udid) const
{
    return Preferencias::lista(claveConocidos).contains(udid);
}

void Modelo::marcarConocido(const QString &udid)
{
    if (!esConocido(udid))
        Preferencias::ponLista(claveConocidos, Preferencias::lista(claveConocidos) << udid);
    iPhoneNuevo_.reset();
    emit cambioDeSesion();
}

QString Modelo::carpetaBase() const
{
    return Carpetas::base(seleccionado_);
}

QString Modelo::carpetaCopias() const
{
    return carpetaBase() + u"/Copias de seguridad"_s;
}

QString Modelo::carpetaDatos() const
{
    return Carpetas::datos(seleccionado_);
}

QString Modelo::carpetaFotosParaIA() const
{
    return Carpetas::fotosParaIA(seleccionado_);
}

QString Modelo::carpetaFotos() const
{
    return Carpetas::fotos(seleccionado_);
}

bool Modelo::carpetaFotosEsLaDeSiempre() const
{
    return Preferencias::texto(Carpetas::claveCarpetaFotos(seleccionado_)).isEmpty();
}

void Modelo::ponCarpetaFotos(const QString &ruta)
{
    Preferencias::ponTexto(Carpetas::claveCarpetaFotos(seleccionado_), ruta);
    emit cambioDeSesion();
}

void Modelo::volverACarpetaPorDefecto()
{
    ponCarpetaFotos({});
}

std::optional<qint64> Modelo::libreEnElMac() const
{
    const auto libres = QStorageInfo(QDir::homePath()).bytesAvailable();
    return libres < 0 ? std::nullopt : std::optional(libres);
}

std::optional<QString> Modelo::noCabe(qint64 bytes) const
{
    return sentenciaDeNoCabe(bytes, libreEnElMac());
}

std::optional<QString> sentenciaDeNoCabe(qint64 bytes, std::optional<qint64> libres)
{
    if (!libres || *libres - margenDeDisco >= bytes)
        return {};
    return u"No cabe. Hacen falta %1 y en el Mac quedan %2. Libera sitio o elige otra carpeta."_s.arg(
        Formato::tamano(bytes), Formato::tamano(libres));
}

void Modelo::abrirEnFinder(const QString &carpeta)
{
    if (seleccionado_)
        QDir().mkpath(carpeta);
    // For a phone that is not there nothing is made: what there is above it is shown.
    auto estaAhi = carpeta;
    while (!QFileInfo::exists(estaAhi) && QFileInfo(estaAhi).path() != estaAhi)
        estaAhi = QFileInfo(estaAhi).path();
    mostrarEnElGestor(estaAhi);
}

QString Modelo::datosDe() const
{
    return seleccionado_ ? QString() : SinTelefono::cual();
}

QStringList Modelo::carpetasConDatos() const
{
    return seleccionado_ ? QStringList() : SinTelefono::conDatos();
}

void Modelo::elegirDatosDe(const QString &carpeta)
{
    SinTelefono::recordar(carpeta);
    emit cambioDeSesion();
}

QVariantList Modelo::dispositivosVariante() const
{
    QVariantList lista;
    for (const auto &uno : dispositivos_)
        lista << QVariant::fromValue(uno);
    return lista;
}

} // namespace vellora
