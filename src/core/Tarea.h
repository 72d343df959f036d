#pragma once

#include "core/Ejecutor.h"
#include "core/Motor.h"
#include "platform/Desvelador.h"

#include <QDateTime>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QUuid>
#include <QVariant>

#include <optional>

namespace vellora
{

class Diario;

/// The one long job of the program: its title, progress, log and ending. Operations are free functions that take it
/// first; they set the frame by `empezar`, run their children through `ejecutor` or `ejecutorMotor`, and end by
/// `cerrar`. Main thread only.
class Tarea : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString titulo READ titulo NOTIFY cambio)
    Q_PROPERTY(QString detalle READ detalle NOTIFY cambio)
    Q_PROPERTY(QStringList registro READ registro NOTIFY registroCambio)
    Q_PROPERTY(bool enMarcha READ enMarcha NOTIFY cambio)
    Q_PROPERTY(qint64 hechos READ hechos NOTIFY cambio)
    Q_PROPERTY(qint64 deTotal READ deTotal NOTIFY cambio)
    Q_PROPERTY(QVariant terminadaBien READ terminadaBienVariante NOTIFY cambio)
    Q_PROPERTY(bool terminada READ terminada NOTIFY cambio)
    Q_PROPERTY(QString carpetaResultado READ carpetaResultadoTexto NOTIFY cambio)
    Q_PROPERTY(bool oculta READ oculta NOTIFY cambio)

public:
    static constexpr qsizetype maximoDeRegistro = 400;

    explicit Tarea(Diario &diario, QObject *padre = nullptr);

    QString titulo() const { return titulo_; }
    QString detalle() const { return detalle_; }
    const QStringList &registro() const { return registro_; }
    bool enMarcha() const { return enMarcha_; }
    qint64 hechos() const { return hechos_; }
    /// Units in all; 0 means that the total is not known.
    qint64 deTotal() const { return deTotal_; }
    /// Absent while nothing has ended, or once the notice was closed.
    std::optional<bool> terminadaBien() const { return terminadaBien_; }
    bool terminada() const { return terminadaBien_.has_value(); }
    std::optional<QString> carpetaResultado() const { return carpetaResultado_; }
    std::optional<QDateTime> inicio() const { return inicio_; }
    bool oculta() const { return oculta_; }
    bool cancelada() const { return cancelada_; }
    std::optional<QUuid> idActividad() const { return idActividad_; }

    void ponTitulo(const QString &texto);
    /// Goes to the journal too while a job runs.
    void ponDetalle(const QString &texto);
    void ponAvance(qint64 hechos, qint64 deTotal);
    void ponCarpetaResultado(const std::optional<QString> &carpeta);
    void ponInicio(const std::optional<QDateTime> &momento);
    void muestra(); ///< `oculta` becomes false

    /// True while the job that was given this number by `trabajo` runs: late answers of an ended job are dropped by it.
    bool sigue(int numero) const { return enMarcha_ && numero == trabajo_; }
    int trabajo() const { return trabajo_; }

    /// The frame of every job: title, first step, machine kept awake, counters and log emptied, journal entry opened.
    void empezar(const QString &titulo, const QString &detalle);
    /// Presents a job that was refused: ended badly without having run, nothing in the journal.
    void rechazar(const QString &titulo, const QString &detalle, const QStringList &lineas);
    /// Appends to the log, which keeps its last 400 lines.
    void apunta(const QString &linea);
    /// Ends the job. A second call does no harm and leaves the journal alone.
    void cerrar(bool bien);

    using AlAvisar = std::function<void(const Motor::Aviso &)>;
    using AlTerminar = std::function<void(int)>;
    /// Runs a command of the engine as the job, on top of one that was already begun or as one of its own. Notices go
    /// to `alAvisar` and other lines to the log. `alTerminar` gets the exit status and has to `cerrar`; it is not
    /// called when there is no engine, which closes the job as failed. All of them only while this job runs: what a
    /// cancelled child says later reaches nobody, so that it cannot close the job that came after. `acabada` tells of
    /// every end. `confirmado`: the owner has agreed to what the command destroys; without it the engine only plans.
    /// `loDemas`: a command whose notices hold secrets keeps even the shreds of a broken one out of the log.
    enum class LoDemas { AlRegistro, Callado };
    void lanzarMotorPublico(const QStringList &argumentos, const QString &titulo, bool confirmado,
                            const AlAvisar &alAvisar, const AlTerminar &alTerminar,
                            LoDemas loDemas = LoDemas::AlRegistro);

    /// Dismisses the notice of an ended job.
    Q_INVOKABLE void cerrarAviso();
    /// The owner's stop: the job is over at once unless it waits for its child (`esperaSuFinAlCancelar`), its children
    /// are told to end.
    Q_INVOKABLE void cancelar();

    /// For the job that runs, whose child tells at its end how far it came: a cancel lets it tell that, and the job
    /// ends with it, some seconds later at the most. A second cancel waits no longer.
    void esperaSuFinAlCancelar() { esperaAlCancelar = true; }

    /// Follows the number of files of a folder in `hechos` every 1.5 s, until `cerrar`.
    void vigilarCarpeta(const QString &carpeta);

    /// Absent before 2 % and 8 seconds; for the strip, an empty text stands for absent.
    std::optional<QString> tiempoRestante() const;
    Q_INVOKABLE QString quedan() const { return tiempoRestante().value_or(QString()); }
    /// 0 to 100, absent when the total is not known; for the strip, -1 stands for absent.
    std::optional<int> porcentaje() const;
    Q_INVOKABLE int porcentajeODesconocido() const { return porcentaje().value_or(-1); }

    /// "menos de un minuto", "unos 12 minutos", "unas 2 horas", "1 h 5 min".
    static QString enPalabras(double segundos);

    Ejecutor ejecutor;      ///< for tools
    Ejecutor ejecutorMotor; ///< for the engine
    Desvelador desvelador;

signals:
    void cambio();
    void registroCambio();
    /// A job has ended; emitted once for each, after the journal was written.
    void acabada(bool bien);

private:
    QVariant terminadaBienVariante() const { return terminadaBien_ ? QVariant(*terminadaBien_) : QVariant(); }
    QString carpetaResultadoTexto() const { return carpetaResultado_.value_or(QString()); }

    Diario &diario;
    QString titulo_;
    QString detalle_;
    QStringList registro_;
    std::optional<QUuid> idActividad_;
    bool enMarcha_ = false;
    qint64 hechos_ = 0;
    qint64 deTotal_ = 0;
    std::optional<bool> terminadaBien_;
    std::optional<QString> carpetaResultado_;
    std::optional<QDateTime> inicio_;
    bool oculta_ = false;
    bool cancelada_ = false;
    bool esperaAlCancelar = false;
    int trabajo_ = 0;
    QTimer cronometro;
};

/// Number of regular files under a folder, hidden ones left out; 0 when it cannot be walked. Any thread.
qint64 contarFicheros(const QString &carpeta);

} // namespace vellora
