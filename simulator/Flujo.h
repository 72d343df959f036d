#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <memory>

using SSL = struct ssl_st;

namespace simulado
{

class Identidad;
class Telefono;

/// One connection: a socket, plain or wrapped in TLS. Blocking, used by one thread; only cortar() may come from
/// another.
class Flujo
{
public:
    enum class Clase { Mensaje, DatosDeFichero };

    /// Takes the descriptor over.
    explicit Flujo(int descriptor);
    ~Flujo();
    Flujo(const Flujo &) = delete;
    Flujo &operator=(const Flujo &) = delete;

    /// From here on the stream belongs to a service of a phone, and that phone's brakes, pauses and cuts act on it.
    void asignar(const std::shared_ptr<Telefono> &telefono, const QString &servicio);
    const QString &servicio() const { return servicio_; }

    /// Exactly `bytes`, or false at the end of the stream.
    bool leer(char *destino, qint64 bytes, Clase clase = Clase::Mensaje);
    /// The whole buffer in one write (in several only while braked): clients read each head with a single receive.
    bool escribir(const QByteArray &datos, Clase clase = Clase::Mensaje);
    bool escribir(const char *datos, qint64 bytes, Clase clase = Clase::Mensaje);

    /// Server side of the handshake.
    bool activarTls(const Identidad &identidad);
    /// Says goodbye on the TLS layer and goes back to plain bytes.
    void quitarTls();

    /// Ends the stream at once; the thread that uses it wakes up with a failure.
    void cortar();
    /// False when the stream was cut meanwhile.
    bool dormir(qint64 milisegundos);
    int descriptor() const { return descriptor_; }
    /// Bytes already decrypted that poll() cannot see.
    bool hayPendiente() const;

private:
    bool enviarTodo(const char *datos, qint64 bytes);
    bool enviarFrenado(const char *datos, qint64 bytes);

    int descriptor_;
    SSL *ssl_ = nullptr;
    std::shared_ptr<Telefono> telefono_;
    QString servicio_;
};

} // namespace simulado
