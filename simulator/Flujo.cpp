#include "Flujo.h"

#include "Averias.h"
#include "Identidad.h"
#include "Telefono.h"

#include <algorithm>
#include <cerrno>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace simulado
{

Flujo::Flujo(int descriptor) : descriptor_(descriptor) {}

Flujo::~Flujo()
{
    if (telefono_)
        telefono_->quitarFlujo(this);
    SSL_free(ssl_);
    close(descriptor_);
}

void Flujo::asignar(const std::shared_ptr<Telefono> &telefono, const QString &servicio)
{
    servicio_ = servicio;
    if (telefono_ == telefono)
        return;
    telefono_ = telefono;
    telefono_->ponerFlujo(this);
}

bool Flujo::leer(char *destino, qint64 bytes, Clase clase)
{
    qint64 leidos = 0;
    while (leidos < bytes) {
        const auto pieza = size_t(std::min<qint64>(bytes - leidos, 1 << 30));
        const ssize_t n =
            ssl_ ? SSL_read(ssl_, destino + leidos, int(pieza)) : recv(descriptor_, destino + leidos, pieza, 0);
        if (n < 0 && !ssl_ && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        leidos += n;
    }
    if (!telefono_)
        return true;
    Averias &averias = telefono_->averias();
    const auto permiso = averias.permitir(servicio_, bytes, clase == Clase::DatosDeFichero, Averias::Sentido::Recibido);
    if (permiso.cortar) {
        telefono_->desconectar();
        return false;
    }
    const qint64 tasa = averias.tasa(servicio_);
    return tasa <= 0 || dormir(bytes * 1000 / tasa);
}

bool Flujo::escribir(const QByteArray &datos, Clase clase)
{
    return escribir(datos.constData(), datos.size(), clase);
}

bool Flujo::escribir(const char *datos, qint64 bytes, Clase clase)
{
    if (!telefono_)
        return enviarTodo(datos, bytes);
    Averias &averias = telefono_->averias();
    if (const int pausa = averias.tomarPausa(servicio_); pausa > 0 && !dormir(pausa))
        return false;
    const auto permiso = averias.permitir(servicio_, bytes, clase == Clase::DatosDeFichero, Averias::Sentido::Enviado);
    const bool enviado =
        averias.tasa(servicio_) > 0 ? enviarFrenado(datos, permiso.bytes) : enviarTodo(datos, permiso.bytes);
    if (permiso.cortar) {
        telefono_->desconectar();
        return false;
    }
    return enviado;
}

bool Flujo::enviarTodo(const char *datos, qint64 bytes)
{
    qint64 enviados = 0;
    while (enviados < bytes) {
        const auto pieza = size_t(std::min<qint64>(bytes - enviados, 1 << 30));
        const ssize_t n = ssl_ ? SSL_write(ssl_, datos + enviados, int(pieza))
                               : send(descriptor_, datos + enviados, pieza, MSG_NOSIGNAL);
        if (n < 0 && !ssl_ && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        enviados += n;
    }
    return true;
}

bool Flujo::enviarFrenado(const char *datos, qint64 bytes)
{
    // Slices of about a twentieth of a second, so that a change of speed and a cut are felt at once.
    qint64 enviados = 0;
    while (enviados < bytes) {
        const qint64 tasa = telefono_->averias().tasa(servicio_);
        const qint64 pieza =
            tasa > 0 ? std::min(bytes - enviados, std::max<qint64>(1024, tasa / 20)) : bytes - enviados;
        if (!enviarTodo(datos + enviados, pieza))
            return false;
        enviados += pieza;
        if (tasa > 0 && !dormir(pieza * 1000 / tasa))
            return false;
    }
    return true;
}

bool Flujo::activarTls(const Identidad &identidad)
{
    // A second session inside the first; no computer opens one.
    if (ssl_)
        return false;
    ssl_ = SSL_new(identidad.contexto());
    if (!ssl_)
        return false;
    SSL_set_fd(ssl_, descriptor_);
    return SSL_accept(ssl_) == 1;
}

void Flujo::quitarTls()
{
    if (!ssl_)
        return;
    // The second call waits for the other side's goodbye, so that none of it is left in the plain stream.
    if (SSL_shutdown(ssl_) == 0)
        SSL_shutdown(ssl_);
    SSL_free(ssl_);
    ssl_ = nullptr;
}

void Flujo::cortar()
{
    shutdown(descriptor_, SHUT_RDWR);
}

bool Flujo::dormir(qint64 milisegundos)
{
    if (milisegundos <= 0)
        return true;
    // Only hang-ups are waited for: data that arrives meanwhile must not end the pause. A client that closed its
    // writing half counts as gone.
    pollfd espera{descriptor_, POLLRDHUP, 0};
    return poll(&espera, 1, int(std::min<qint64>(milisegundos, 3'600'000))) == 0;
}

bool Flujo::hayPendiente() const
{
    return ssl_ && SSL_pending(ssl_) > 0;
}

} // namespace simulado
