#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QPointer>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <stop_token>
#include <thread>
#include <utility>

namespace vellora
{

/// The threads of `enSegundoPlano`. They end before the program does: as the application object goes, they are asked to
/// stop, the tools that they wait for are ended, and they are waited for.
class SegundoPlano
{
public:
    /// How long the end of the program waits for them.
    static constexpr std::chrono::seconds limite{5};

    static SegundoPlano &delPrograma();

    /// Any thread. Stops when the program ends; work that walks a disk or reads much looks at it now and then.
    std::stop_token parada() const { return fin.get_token(); }

    /// Main thread only; after the end nothing is begun any more.
    template <typename Trabajo> void empezar(Trabajo trabajo)
    {
        if (!preparar())
            return;
        auto &uno = hilos.emplace_back();
        uno.hilo = std::thread([this, &uno, trabajo = std::move(trabajo)]() mutable {
            {
                auto suyo = std::move(trabajo);
                suyo();
            } // what it held has gone by the time that it counts as ended
            const std::lock_guard cerrojo(mutex);
            uno.acabado = true;
            alAcabar.notify_all();
        });
    }

    /// Asks all to stop and waits at most `limite`. The end of the application object calls it.
    void terminar();
    /// Whether some thread did not end in time, after `terminar`: what it uses must not be taken from under it.
    bool quedaAlguno() const { return queda; }

private:
    struct Hilo {
        std::thread hilo;
        bool acabado = false; ///< under `mutex`
    };

    SegundoPlano() = default;
    bool preparar();
    void recoger();

    std::stop_source fin;
    std::mutex mutex;
    std::condition_variable alAcabar;
    std::list<Hilo> hilos;
    bool preparado = false;
    std::atomic<bool> queda = false;
};

/// Runs `trabajo` on a thread of its own and hands its result to `despues` on the main thread, unless `contexto` has
/// gone by then. A thread each, since most of them wait for a tool: a pool of as many as cores would let one silent
/// tool hold up the rest. Main thread only.
template <typename Trabajo, typename Despues> void enSegundoPlano(QObject *contexto, Trabajo trabajo, Despues despues)
{
    SegundoPlano::delPrograma().empezar(
        [contexto = QPointer<QObject>(contexto), trabajo = std::move(trabajo), despues = std::move(despues)]() mutable {
            auto resultado = trabajo();
            auto entregar = [contexto = std::move(contexto), despues = std::move(despues),
                             resultado = std::move(resultado)]() mutable {
                if (contexto)
                    despues(std::move(resultado));
            };
            if (auto *programa = QCoreApplication::instance())
                QMetaObject::invokeMethod(programa, std::move(entregar), Qt::QueuedConnection);
        });
}

} // namespace vellora
