#include "Flujo.h"
#include "Plist.h"
#include "Servicios.h"
#include "Telefono.h"

#include <QSet>

#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

/// Notices on their way to one client: put in by any thread, sent by the client's own, which alone may use its stream.
class Cola
{
public:
    Cola() : senal_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    ~Cola() { close(senal_); }
    Cola(const Cola &) = delete;
    Cola &operator=(const Cola &) = delete;

    int senal() const { return senal_; }
    void poner(const QString &nombre)
    {
        const std::lock_guard cerrojo(mutex_);
        pendientes_.append(nombre);
        eventfd_write(senal_, 1);
    }
    QStringList tomar()
    {
        const std::lock_guard cerrojo(mutex_);
        eventfd_t ignorado = 0;
        eventfd_read(senal_, &ignorado);
        return std::exchange(pendientes_, {});
    }

private:
    const int senal_;
    std::mutex mutex_;
    QStringList pendientes_;
};

/// False when the client is done.
bool atenderPeticion(Telefono &telefono, Flujo &flujo, QSet<QString> &observados)
{
    const auto mensaje = recibirPlist(flujo);
    if (!mensaje)
        return false;
    const QVariantMap peticion = mensaje->toMap();
    const QString orden = peticion[u"Command"_s].toString();
    const QString nombre = peticion[u"Name"_s].toString();
    telefono.averias().contarPeticion(u"np:"_s + orden);
    if (orden == "ObserveNotification"_L1)
        observados.insert(nombre);
    if (orden == "PostNotification"_L1)
        telefono.avisar(nombre);
    if (orden != "Shutdown"_L1)
        return true;
    enviarPlist(flujo, QVariantMap{{u"Command"_s, u"ProxyDeath"_s}});
    return false;
}

bool repartir(Cola &cola, Flujo &flujo, const QSet<QString> &observados)
{
    const QStringList nombres = cola.tomar();
    for (const QString &nombre : nombres) {
        const QVariantMap mensaje{{u"Command"_s, u"RelayNotification"_s}, {u"Name"_s, nombre}};
        if (observados.contains(nombre) && !enviarPlist(flujo, mensaje))
            return false;
    }
    return true;
}

} // namespace

void servirAvisos(Telefono &telefono, Flujo &flujo)
{
    Cola cola;
    QSet<QString> observados;
    const int oyente = telefono.escucharAvisos([&cola](const QString &nombre) { cola.poner(nombre); });
    for (;;) {
        pollfd esperas[2] = {{flujo.descriptor(), POLLIN, 0}, {cola.senal(), POLLIN, 0}};
        if (!flujo.hayPendiente() && poll(esperas, 2, -1) < 0)
            break;
        if ((esperas[1].revents & POLLIN) && !repartir(cola, flujo, observados))
            break;
        if ((flujo.hayPendiente() || esperas[0].revents) && !atenderPeticion(telefono, flujo, observados))
            break;
    }
    telefono.dejarAvisos(oyente);
}

} // namespace simulado
