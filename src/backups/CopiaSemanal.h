#pragma once

#include "core/Diario.h"
#include "core/Tarea.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <functional>

namespace vellora
{

/// One run of the weekly backup, beside the window or without it: decides whether it is due, makes it as the window
/// does, on top of the one before, and tells of it. Its entry goes to a journal of its own. Main thread only.
class CopiaSemanal : public QObject
{
    Q_OBJECT

public:
    /// Of the run as a whole; the numbers are the exit status of the command.
    enum Fin { Bien = 0, Mal = 1, NoToca = 0 };
    /// `decir` gets each line for the log, `avisar` the notice for the owner's screen.
    using Decir = std::function<void(const QString &)>;

    CopiaSemanal(const QString &elUdid, const QString &lasCopias, Decir alDecir, Decir alAvisar);

    /// Whether the backup is due; otherwise there is nothing to run. A backup counts once it has finished, so that a
    /// half one is made anew at the next interval.
    bool toca(const QDateTime &ahora) const;
    /// Ends by `acabada`.
    void empezar();
    void cancelar();
    bool enMarcha() const { return tarea.enMarcha(); }
    bool quedanHijos() const { return tarea.ejecutor.enMarcha() || tarea.ejecutorMotor.enMarcha(); }

signals:
    void acabada(int fin);

private:
    void terminar(bool bien);
    void dichoConHora(const QString &texto) const;

    QString udid;
    QString copias;
    Decir decir;
    Decir avisar;
    Diario diario;
    Tarea tarea;
};

} // namespace vellora
