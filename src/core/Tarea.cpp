#include "core/Tarea.h"

#include "core/Diario.h"
#include "core/SegundoPlano.h"

#include <QDirIterator>

#include <cmath>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

// The engine destroys only what it finds confirmed here, so a value left over in the owner's own environment must not
// pass for an answer that was never given.
Ejecutor::Entorno entornoDelMotor(bool confirmado)
{
    auto entorno = Ejecutor::entornoDelPrograma();
    entorno.remove(u"CONFIRMADO"_s);
    if (confirmado)
        entorno[u"CONFIRMADO"_s] = u"SI"_s;
    return entorno;
}

} // namespace

Tarea::Tarea(Diario &elDiario, QObject *padre) : QObject(padre), diario(elDiario)
{
    cronometro.setInterval(1500);
}

void Tarea::ponTitulo(const QString &texto)
{
    titulo_ = texto;
    emit cambio();
}

void Tarea::ponDetalle(const QString &texto)
{
    if (texto == detalle_)
        return;
    detalle_ = texto;
    if (idActividad_ && !texto.isEmpty())
        diario.actualizar(*idActividad_, texto);
    emit cambio();
}

void Tarea::ponAvance(qint64 nuevosHechos, qint64 nuevoTotal)
{
    if (nuevosHechos == hechos_ && nuevoTotal == deTotal_)
        return;
    hechos_ = nuevosHechos;
    deTotal_ = nuevoTotal;
    emit cambio();
}

void Tarea::ponCarpetaResultado(const std::optional<QString> &carpeta)
{
    carpetaResultado_ = carpeta;
    emit cambio();
}

void Tarea::ponInicio(const std::optional<QDateTime> &momento)
{
    inicio_ = momento;
    emit cambio();
}

void Tarea::muestra()
{
    oculta_ = false;
    emit cambio();
}

void Tarea::empezar(const QString &titulo, const QString &detalle)
{
    titulo_ = titulo;
    ponDetalle(detalle);
    desvelador.despierta();
    terminadaBien_.reset();
    inicio_.reset();
    carpetaResultado_.reset();
    cancelada_ = false;
    oculta_ = false; // that the notice before it was closed hides no other job
    esperaAlCancelar = false;
    ++trabajo_;
    hechos_ = 0;
    deTotal_ = 0;
    registro_.clear();
    if (!enMarcha_)
        idActividad_ = diario.empezar(titulo_.isEmpty() ? u"Trabajando"_s : titulo_);
    enMarcha_ = true;
    emit registroCambio();
    emit cambio();
}

void Tarea::rechazar(const QString &titulo, const QString &detalle, const QStringList &lineas)
{
    titulo_ = titulo;
    detalle_ = detalle;
    oculta_ = false;
    terminadaBien_ = false;
    registro_ = lineas;
    hechos_ = 0;
    deTotal_ = 0;
    carpetaResultado_.reset();
    emit registroCambio();
    emit cambio();
}

void Tarea::apunta(const QString &linea)
{
    registro_ << linea;
    if (registro_.size() > maximoDeRegistro)
        registro_ = registro_.last(maximoDeRegistro);
    emit registroCambio();
}

void Tarea::cerrar(bool bien)
{
    cronometro.stop();
    desvelador.puedeDormir();
    enMarcha_ = false;
    terminadaBien_ = bien;
    if (idActividad_) {
        const auto palabras = bien ? u"Terminado"_s : u"No se completó"_s;
        diario.terminar(*idActividad_, bien, detalle_.isEmpty() ? palabras : detalle_, carpetaResultado_);
        idActividad_.reset();
        emit cambio();
        emit acabada(bien);
        return;
    }
    emit cambio();
}

void Tarea::lanzarMotorPublico(const QStringList &argumentos, const QString &titulo, bool confirmado,
                               const AlAvisar &alAvisar, const AlTerminar &alTerminar, LoDemas loDemas)
{
    const auto &motor = Motor::lanzamiento();
    if (!motor) {
        ponTitulo(titulo);
        apunta(u"No encuentro el motor del iPhone dentro de la app."_s);
        cerrar(false);
        return;
    }
    // The job that calls for the engine in its midst keeps what it has already set.
    const bool enMedio = enMarcha_;
    const auto [suInicio, suCarpeta, suNumero] = std::tuple(inicio_, carpetaResultado_, trabajo_);
    empezar(titulo, u"Conectando con el iPhone…"_s);
    if (enMedio) {
        inicio_ = suInicio;
        carpetaResultado_ = suCarpeta;
        trabajo_ = suNumero;
    }

    ejecutorMotor.entornoExtra = entornoDelMotor(confirmado);
    const auto linea = [this, numero = trabajo_, alAvisar, loDemas](const QString &texto) {
        if (!sigue(numero))
            return;
        if (const auto aviso = Motor::interpretar(texto))
            alAvisar(*aviso);
        else if (loDemas == LoDemas::AlRegistro)
            apunta(texto);
    };
    // A cancelled child ends seconds later, when the next job may already run: its word is nobody's any more.
    const auto final = [this, numero = trabajo_, alTerminar](int codigo) {
        if (sigue(numero))
            alTerminar(codigo);
    };
    ejecutorMotor.lanzar(motor->ejecutable, motor->argumentos + argumentos, linea, final);
}

void Tarea::cerrarAviso()
{
    oculta_ = true;
    terminadaBien_.reset();
    detalle_.clear();
    registro_.clear();
    emit registroCambio();
    emit cambio();
}

void Tarea::cancelar()
{
    const bool espera = enMarcha_ && esperaAlCancelar && !cancelada_;
    cancelada_ = true;
    ejecutor.cancelar();
    ejecutorMotor.cancelar();
    apunta(u"Cancelado por ti."_s);
    if (espera)
        return ponDetalle(u"Parando…"_s);
    cerrar(false);
}

void Tarea::vigilarCarpeta(const QString &carpeta)
{
    cronometro.stop();
    cronometro.disconnect();
    // A folder of photos on a slow disk takes a while to walk: the count is made aside, and one at a time.
    const auto contando = std::make_shared<bool>(false);
    connect(&cronometro, &QTimer::timeout, this, [this, carpeta, contando, numero = trabajo_] {
        if (std::exchange(*contando, true))
            return;
        const auto contar = [carpeta] {
            return contarFicheros(carpeta);
        };
        enSegundoPlano(this, contar, [this, contando, numero](qint64 cuantos) {
            *contando = false;
            if (sigue(numero) && cronometro.isActive())
                ponAvance(cuantos, deTotal_);
        });
    });
    cronometro.start();
}

std::optional<QString> Tarea::tiempoRestante() const
{
    if (!enMarcha_ || !inicio_ || deTotal_ <= 0 || hechos_ <= 0)
        return {};
    const auto fraccion = static_cast<double>(hechos_) / static_cast<double>(deTotal_);
    const auto pasados = static_cast<double>(inicio_->msecsTo(QDateTime::currentDateTimeUtc())) / 1000.0;
    if (fraccion <= 0.02 || pasados <= 8.0)
        return {};
    return enPalabras(pasados / fraccion - pasados);
}

std::optional<int> Tarea::porcentaje() const
{
    if (deTotal_ < 1)
        return {};
    return static_cast<int>(static_cast<double>(std::min(hechos_, deTotal_)) / static_cast<double>(deTotal_) * 100.0);
}

QString Tarea::enPalabras(double segundos)
{
    if (segundos < 45)
        return u"menos de un minuto"_s;
    const auto minutos = std::llround(segundos / 60.0);
    if (minutos < 60)
        return u"unos %1 minuto%2"_s.arg(minutos).arg(minutos == 1 ? QString() : u"s"_s);
    const auto horas = minutos / 60;
    if (minutos % 60 != 0)
        return u"%1 h %2 min"_s.arg(horas).arg(minutos % 60);
    return u"unas %1 hora%2"_s.arg(horas).arg(horas == 1 ? QString() : u"s"_s);
}

qint64 contarFicheros(const QString &carpeta)
{
    // Without QDir::Hidden a hidden folder is not entered either.
    QDirIterator recorrido(carpeta, QDir::Files | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    const auto parada = SegundoPlano::delPrograma().parada();
    qint64 cuantos = 0;
    while (recorrido.hasNext() && !parada.stop_requested()) {
        recorrido.next();
        if (!recorrido.fileInfo().isSymLink())
            ++cuantos;
    }
    return cuantos;
}

} // namespace vellora
