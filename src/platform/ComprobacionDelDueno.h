#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace vellora
{

/// The system's own check that its owner is there: polkit, by the action file that comes with the program. The check,
/// its window and the password or fingerprint are the system's; nothing of it passes through this program. The bus is
/// the one that the system keeps in its own folder: an address from the environment would let anybody answer. Main
/// thread only.
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

    enum class Hay {
        Si,
        No,          ///< this computer has no such check: no system bus, no polkit, no action file
        SinRespuesta ///< there is one, or may be, and it did not answer
    };
    using AlSaber = std::function<void(Hay)>;

    /// Looks whether there is a check. `alSaber` is called once, within seconds or before this returns, unless this
    /// object has gone by then.
    void mirar(const AlSaber &alSaber);
    /// Whether a fingerprint is enrolled for this person. Waits for the system: background threads only.
    static bool hayHuella();

    /// Asks for one action, which decides the sentence that the system shows. `alResponder` is called once, unless this
    /// object has gone by then; the owner may take as long as needed.
    void comprobar(const QString &accion, const AlResponder &alResponder);
};

} // namespace vellora
