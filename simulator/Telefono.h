#pragma once

#include "Ajustes.h"
#include "Averias.h"
#include "Emparejamiento.h"
#include "LlavesDeCopia.h"

#include <QHash>
#include <QSet>
#include <QVariantMap>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>

namespace simulado
{

class Flujo;

/// One phone: its state, its settings and its live connections. Every member may be called from any thread.
class Telefono : public std::enable_shared_from_this<Telefono>
{
public:
    using Anuncio = std::function<void(const QVariantMap &mensaje)>;

    Telefono(const AjustesTelefono &ajustes, const QString &carpeta, std::shared_ptr<const Identidad> identidad,
             const QString &carpetaDeRegistros);
    /// Reads telefono.json and the stored pair record. Returns an error sentence, or empty. Call once, before use.
    QString cargar();
    /// Whom to tell about attaching, detaching and pairing. Call once, before use.
    void anunciarA(Anuncio anuncio) { anunciar_ = std::move(anuncio); }

    const AjustesTelefono &ajustes() const { return ajustes_; } ///< as it began; what may change has its own member
    const QString &udid() const { return ajustes_.udid; }
    const QString &carpeta() const { return carpeta_; }
    const Identidad &identidad() const { return *identidad_; }
    Averias &averias() { return averias_; }
    Emparejamiento &emparejamiento() { return emparejamiento_; }

    /// Plugs it in, under a new number on the bus. Nothing happens when it was already.
    void conectar();
    /// Pulls it out: every live stream ends.
    void desconectar();
    /// Pulls it out now and plugs it in again after a while, as a restart does.
    void reiniciar(int milisegundos);
    bool conectado() const;
    /// "Attached" messages of its present connections, for whoever asks or begins to listen.
    QVariantList presencias() const;
    bool esSuyo(quint32 dispositivo) const;

    void bloquear(bool bloqueado);
    bool bloqueado() const;

    /// Lockdown values. An empty domain is the phone's general one.
    QVariantMap valores(const QString &dominio) const;
    void ponerValor(const QString &dominio, const QString &clave, const QVariant &valor); ///< invalid removes the key

    /// The phone's own disk, in bytes.
    qint64 espacioLibre() const;
    void llenarDisco(bool lleno);
    /// Takes (or, negative, gives back) room; false when it does not fit.
    bool ocuparEspacio(qint64 bytes);

    quint16 abrirPuerto(const QString &servicio, bool tls);
    struct Puerto {
        QString servicio;
        bool tls = false;
    };
    /// The service that waits at that port; each opening serves one connection.
    std::optional<Puerto> tomarPuerto(quint16 puerto);

    void ponerFlujo(Flujo *flujo);
    void quitarFlujo(Flujo *flujo);

    /// Sends a notice of the phone to whoever observes it; the notice service listens with `escucharAvisos`.
    void avisar(const QString &nombre);
    int escucharAvisos(std::function<void(const QString &)> oyente);
    void dejarAvisos(int oyente);

    /// Passcode question before a backup: pedirCodigo() waits until someone types it. False when time ran out.
    void exigirCodigo(bool exigir, int plazoMs);
    void introducirCodigo();
    bool pedirCodigo(Flujo &flujo);

    std::atomic<bool> ignoraEspacioDelOrdenador = false;
    QString claveDeCopia() const;
    void ponerClaveDeCopia(const QString &clave);
    /// Rounds of the next keys that are made; fewer than a true phone's to save time.
    std::atomic<int> rondasDeCopia = LlavesDeCopia::rondasDeVerdad;
    /// The keys of the encrypted backups, the same as long as the password is; absent without one. Making them takes
    /// seconds.
    std::optional<LlavesDeCopia> llavesDeCopia();
    /// Options of the last Backup or Restore request, for tests.
    void recordarPeticion(const QVariantMap &peticion);
    QVariantMap ultimaPeticion() const;

private:
    QVariantMap presencia(quint32 dispositivo, bool porRed) const;

    const AjustesTelefono ajustes_;
    const QString carpeta_;
    const std::shared_ptr<const Identidad> identidad_;
    Averias averias_;
    Emparejamiento emparejamiento_;
    Anuncio anunciar_;

    mutable std::mutex mutex_;
    std::condition_variable codigoPuesto_;
    QHash<quint32, bool> dispositivos_; ///< bus numbers while plugged in; the value tells the network ones
    bool bloqueado_;
    bool discoLleno_ = false;
    bool exigeCodigo_ = false;
    bool codigoIntroducido_ = false;
    int plazoCodigoMs_ = 180'000;
    qint64 libre_ = 0;
    QString claveDeCopia_;
    std::mutex mutexDeLlaves_;
    std::optional<LlavesDeCopia> llaves_;
    QString claveDeLlaves_; ///< the password that they were made for
    QVariantMap dominios_;
    QVariantMap ultimaPeticion_;
    QHash<quint16, Puerto> puertos_;
    quint16 ultimoPuerto_ = 50000;
    std::set<Flujo *> flujos_;
    QHash<int, std::function<void(const QString &)>> oyentes_;
    int ultimoOyente_ = 0;
};

} // namespace simulado
