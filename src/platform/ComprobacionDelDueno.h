#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace vellora
{

/// The system's own check that its owner is there: polkit, by the action file that comes with the program. The check,
/// its window and the password or fingerprint are the system's; nothing of it passes through this program.
/// Main thread only.
class ComprobacionDelDueno : public QObject
{
    Q_OBJECT

public:
    enum class Respuesta {
        Si,
        No,
        Cancelada,   ///< the owner closed the question
        SinPreguntar ///< there is nobody to ask: no polkit, no action file, no window for its question
    };
    using AlResponder = std::function<void(Respuesta)>;

    explicit ComprobacionDelDueno(QObject *padre = nullptr) : QObject(padre) {}

    /// Whether polkit is there and knows the program's actions. Waits for the system bus, milliseconds.
    static bool disponible();
    /// Whether a fingerprint is enrolled for this person.
    static bool hayHuella();

    /// Asks for one action, which decides the sentence that the system shows. `alResponder` is called once, unless this
    /// object has gone by then; the owner may take as long as needed.
    void comprobar(const QString &accion, const AlResponder &alResponder);
};

} // namespace vellora
