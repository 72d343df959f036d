#pragma once

#include <QJsonObject>
#include <QString>

namespace vellora::motor
{

/// The only way out of a command: one notice a line, a JSON object with the member "tipo", each written at once.
/// One thread at a time.
class Avisos
{
public:
    /// What a pipe takes in one piece whoever else writes to it (POSIX); the line feed counts.
    static constexpr qsizetype largoMaximo = 4096;

    /// Does not own the descriptor.
    explicit Avisos(int elDescriptor) : descriptor(elDescriptor) {}

    /// What is longer than `largoMaximo` goes to a file of its own that only the owner can read, in the program's
    /// private folder of the session; the line names it in "fichero_datos" and the reader removes it.
    /// False when that file cannot be written: nothing was told then.
    bool avisar(const QString &tipo, QJsonObject datos = {});
    /// The number of units to come.
    void total(qint64 unidades);
    /// At most ten a second, so that many small units do not drown the reader, and the last one in any case; `hechos`
    /// counts from 0 to the total.
    void progreso(qint64 hechos, const QJsonObject &mas = {});
    /// Gives the exit status of the command.
    int error(const QString &motivo);
    /// A line for the log. It never passes for a notice.
    void linea(const QString &texto);

private:
    void escribir(const QByteArray &renglon);

    int descriptor;
    qint64 deTotal = 0;
    qint64 ultimoProgreso = 0; ///< milliseconds of the steady clock
};

} // namespace vellora::motor
