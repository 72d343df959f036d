#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <mutex>

namespace vellora
{

/// One run that reads databases and writes results, as it is known to everything that its thread calls: whether it may
/// go on, and what could not be read or written. Stopped, it gives no file a name any more, however late its thread
/// notices. Any thread.
class Vuelta
{
public:
    Vuelta() = default;
    Vuelta(const Vuelta &) = delete;
    Vuelta &operator=(const Vuelta &) = delete;

    /// While it lives, the calling thread works for that run.
    class EnEsteHilo
    {
    public:
        explicit EnEsteHilo(Vuelta &suya);
        EnEsteHilo(const EnEsteHilo &) = delete;
        EnEsteHilo &operator=(const EnEsteHilo &) = delete;
        ~EnEsteHilo();
    };

    /// Returns when a naming that is under way is over; there is none after it.
    void parar();
    bool sigue() const { return siguiendo; }

    /// What went wrong, each once, in order.
    struct Incidencias {
        QStringList danadas;     ///< databases that could not be read to the end, by the names of their files
        QStringList sinEscribir; ///< results, relative to their folder
    };
    Incidencias incidencias() const;

    // What the thread's own run is told; without a run, nothing happens but what is asked for.
    static bool seguimos();
    /// Runs `dar` unless the run was stopped; what it gives, or false.
    static bool publicar(const std::function<bool()> &dar);
    static void danada(const QString &base);
    static void sinEscribir(const QByteArray &relativa);

private:
    static thread_local Vuelta *delHilo;

    std::atomic<bool> siguiendo = true;
    mutable std::mutex mutex;
    Incidencias habidas;
};

} // namespace vellora
