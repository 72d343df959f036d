#pragma once

#include "Ajustes.h"

#include <QSet>
#include <QString>
#include <QVariantMap>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace simulado
{

class Flujo;
class Identidad;
class Telefono;

/// The USB multiplexing daemon: a UNIX socket where computers list the phones, watch them come and go, and reach their
/// ports. Every member may be called from any thread unless it says otherwise.
class Mux
{
public:
    explicit Mux(std::shared_ptr<const Identidad> identidad);
    ~Mux();

    /// Begins to listen. Returns an error sentence, or empty. Call once.
    QString escuchar(const QString &ruta);
    /// Ends every connection, waits for their threads and removes the socket. Call once.
    void parar();

    /// False when that identifier is taken.
    bool anadir(const std::shared_ptr<Telefono> &telefono);
    /// An empty identifier finds the phone when there is only one.
    std::shared_ptr<Telefono> buscar(const QString &udid) const;

private:
    struct Oyente {
        std::shared_ptr<Flujo> flujo;
        QSet<quint32> vistos; ///< bus numbers it was told of, so that none is announced twice
    };

    void aceptar();
    void empezar(const std::shared_ptr<Flujo> &nuevo); ///< with mutex_ held
    void servir(const std::shared_ptr<Flujo> &flujo);
    /// False when the conversation with the daemon is over (end of stream, or the stream was handed to a phone).
    bool atenderUna(const std::shared_ptr<Flujo> &flujo);
    bool conectar(const std::shared_ptr<Flujo> &flujo, quint32 etiqueta, const QVariantMap &peticion);
    QVariantMap responder(const QVariantMap &peticion) const;
    bool empezarAEscuchar(const std::shared_ptr<Flujo> &flujo, quint32 etiqueta);
    void anunciar(const QVariantMap &mensaje);
    static void decir(Oyente &oyente, const QVariantMap &mensaje);
    std::vector<std::shared_ptr<Telefono>> telefonos() const;

    const std::shared_ptr<const Identidad> identidad_;
    QString ruta_;
    int escucha_ = -1;
    std::thread hiloAceptar_;

    mutable std::mutex mutex_;
    std::condition_variable sinHilos_;
    bool parando_ = false;
    int hilos_ = 0;
    std::set<std::shared_ptr<Flujo>> flujos_;
    std::vector<std::shared_ptr<Telefono>> telefonos_;

    std::mutex mutexOyentes_; ///< guards oyentes_ and every write to them, so that events keep their order
    std::vector<Oyente> oyentes_;
};

} // namespace simulado
