#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace vellora
{

/// The only way a child process is started: `rapido` for a short question to a tool, `lanzar` for a long job.
///
/// A child lives in a process group of its own, so that ending it ends whatever it started too, and the kernel ends it
/// when this program dies, however that happens.
class Ejecutor : public QObject
{
    Q_OBJECT

public:
    using Entorno = QHash<QString, QString>;
    using Linea = std::function<void(const QString &)>;
    using Final = std::function<void(int)>;

    explicit Ejecutor(QObject *padre = nullptr);
    ~Ejecutor() override;

    struct Respuesta {
        QString salida;
        bool aTiempo = true; ///< false when it had to be ended; `salida` is then what it had written by that time
    };

    /// Runs a tool and returns what it wrote to standard output, or an empty text when it cannot be started, writes
    /// bytes that are not UTF-8, or more than `maximoDeSalida`. Standard error is thrown away; the environment is
    /// inherited as it is. Blocks: background threads only, at most `segundos` and the grace. A tool that has not ended
    /// by then is ended, with all that it started, and so it is when the program ends meanwhile.
    static Respuesta preguntar(const QString &ejecutable, const QStringList &argumentos, double segundos);
    /// The same, where it is all one whether the tool ended by itself.
    static QString rapido(const QString &ejecutable, const QStringList &argumentos, double segundos = 20.0);

    static constexpr qsizetype maximoDeSalida = 64LL * 1024 * 1024;

    /// Bytes of data of each child (RLIMIT_DATA): none of the tools needs a third of it, and what a phone or a file
    /// claims to need beyond it is refused to the child, not taken from the computer. A child may raise it for itself.
    static constexpr unsigned long memoriaDeUnHijo = 480UL * 1024 * 1024;
    /// Between fork and exec: system calls only.
    static void acotarMemoria();

    /// Starts a job and returns at once. Main thread only, as are both callbacks.
    /// `linea` gets each line of standard output and standard error, trimmed of blanks and tabs, never empty; a line
    /// feed or a lone carriage return ends a line, the pair of both does not. There is no buffer between two reads.
    /// `final` is called once, after the last line, with the exit status (the signal's number when killed by one), or
    /// with -1 after the line "No se pudo arrancar: …".
    void lanzar(const QString &ejecutable, const QStringList &argumentos, const Linea &linea, const Final &final);

    /// The environment of this program, to be added to for `entornoExtra`.
    static Entorno entornoDelPrograma();

    /// Asks the running child and all that it started to end, and kills them after `graciaAntesDeMatar`.
    /// `final` still arrives, once. Harmless when nothing runs.
    void cancelar();

    bool enMarcha() const;
    /// Process identifier of the running child, 0 when none runs.
    qint64 procesoHijo() const { return proceso ? proceso->processId() : 0; }

    /// When present, the whole environment of the next `lanzar`, which consumes it. PATH (the search folders) and
    /// PYTHONUNBUFFERED are set in any case.
    std::optional<Entorno> entornoExtra;

    /// Milliseconds between the polite request to end and the kill.
    static constexpr int graciaAntesDeMatar = 5000;

private:
    QPointer<QProcess> proceso;
};

/// Splits a batch of output into lines as `lanzar` promises.
QStringList partirEnLineas(const QString &texto);

} // namespace vellora
