#include "engine/device/Plazo.h"

#include <QByteArray>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <map>
#include <mutex>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>

namespace vellora::motor
{

namespace
{

using Reloj = std::chrono::steady_clock;

std::atomic<bool> dadoPorPerdido = false;

bool esDeUsbmuxd(int descriptor)
{
    static const auto dicha = qgetenv("USBMUXD_SOCKET_ADDRESS");
    static const auto ruta = dicha.startsWith("UNIX:") ? dicha.mid(5) : QByteArray("/var/run/usbmuxd");
    sockaddr_storage otro = {};
    socklen_t largo = sizeof otro;
    if (getpeername(descriptor, reinterpret_cast<sockaddr *>(&otro), &largo) != 0)
        return false;
    if (otro.ss_family == AF_INET || otro.ss_family == AF_INET6)
        return true; // usbmuxd of another machine; the engine speaks to nobody else over the network
    sockaddr_un local = {};
    std::memcpy(&local, &otro, std::min<size_t>(largo, sizeof local));
    const auto nombre =
        QByteArray(local.sun_path, static_cast<qsizetype>(strnlen(local.sun_path, sizeof local.sun_path)));
    // The folder may be a link: /var/run is /run.
    return otro.ss_family == AF_UNIX && (nombre == ruta || nombre == "/run/usbmuxd");
}

void cortarConexiones()
{
    rlimit limite = {};
    getrlimit(RLIMIT_NOFILE, &limite);
    const auto ultimo = static_cast<int>(std::min<rlim_t>(limite.rlim_cur, 65536));
    for (int descriptor = 3; descriptor < ultimo; ++descriptor) {
        if (esDeUsbmuxd(descriptor))
            shutdown(descriptor, SHUT_RDWR);
    }
}

/// Looks twice a second whether any question has been out for too long.
class Vigilante
{
public:
    Vigilante() : hilo([this] { vigilar(); }) {}
    ~Vigilante()
    {
        {
            const std::lock_guard cerrojo(mutex);
            acabar = true;
        }
        despierta.notify_all();
        hilo.join();
    }
    int empezar(std::chrono::seconds cuanto)
    {
        const std::lock_guard cerrojo(mutex);
        plazos.emplace(++ultimo, Reloj::now() + cuanto);
        return ultimo;
    }
    void terminar(int numero)
    {
        const std::lock_guard cerrojo(mutex);
        plazos.erase(numero);
    }

private:
    void vigilar()
    {
        constexpr auto cada = std::chrono::milliseconds(500);
        std::unique_lock cerrojo(mutex);
        while (!despierta.wait_for(cerrojo, cada, [this] { return acabar; })) {
            const auto ahora = Reloj::now();
            const bool alguno =
                std::any_of(plazos.begin(), plazos.end(), [&](const auto &plazo) { return plazo.second < ahora; });
            if (!alguno)
                continue;
            dadoPorPerdido = true;
            cortarConexiones(); // again each time: the library may have opened another one meanwhile
        }
    }

    std::mutex mutex;
    std::condition_variable despierta;
    bool acabar = false;
    std::map<int, Reloj::time_point> plazos;
    int ultimo = 0;
    std::thread hilo; // last: it uses all the others
};

Vigilante &vigilante()
{
    static Vigilante unico;
    return unico;
}

} // namespace

Plazo::Plazo(std::chrono::seconds cuanto) : numero(vigilante().empezar(cuanto)) {}

Plazo::~Plazo()
{
    vigilante().terminar(numero);
}

bool Plazo::vencido()
{
    return dadoPorPerdido;
}

} // namespace vellora::motor
