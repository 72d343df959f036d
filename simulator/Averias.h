#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QVariantMap>

#include <mutex>
#include <optional>

namespace simulado
{

/// One ordered failure of one kind of request.
struct Fallo {
    QVariant error;       ///< a lockdown/instproxy error name or a number, whichever the service speaks
    QString texto;        ///< optional words that go with it
    int veces = 0;        ///< how many more times; 0 = until it is cleared
    int trasFicheros = 0; ///< backups only: fail after this many uploaded files instead of at once
};

/// What a phone has been told to do badly, and what it has counted. Every member may be called from any thread.
class Averias
{
public:
    enum class Sentido { Enviado, Recibido };

    void fallar(const QString &peticion, const Fallo &fallo);
    void dejarDeFallar(const QString &peticion);
    /// The failure that this request must suffer now, spending one of its times.
    std::optional<Fallo> tomarFallo(const QString &peticion);

    void cortar(const QString &servicio, qint64 bytes, Sentido sentido);
    void cortarEntreFicheros(const QString &servicio, int ficheros);
    bool hayCorte(const QString &servicio);
    bool tocaCortarEntreFicheros(const QString &servicio, int ficherosSubidos);
    void frenar(const QString &servicio, qint64 bytesPorSegundo);
    void pausar(const QString &servicio, int milisegundos, int veces);

    struct Permiso {
        qint64 bytes = 0;    ///< how much of the write may go out
        bool cortar = false; ///< the cable comes out right after that
    };
    /// `esDatos`: the bytes are the inside of a file, the only place where a file service is cut.
    Permiso permitir(const QString &servicio, qint64 bytes, bool esDatos, Sentido sentido);
    qint64 tasa(const QString &servicio);
    int tomarPausa(const QString &servicio);

    void contarConexion(const QString &servicio);
    void contarPeticion(const QString &nombre);
    void contarEvento(const QString &nombre);
    QVariantMap cuentas();

    static inline bool traza = false; ///< say each request and event on stderr; set once before any thread starts

private:
    struct Corte {
        qint64 restan = 0;
        Sentido sentido = Sentido::Enviado;
    };
    struct Pausa {
        int milisegundos = 0;
        int veces = 0; ///< 0 = always
    };
    void sumar(const QString &grupo, const QString &nombre, qint64 cuanto);

    std::mutex mutex_;
    QHash<QString, Fallo> fallos_;
    QHash<QString, Corte> cortes_;
    QHash<QString, int> cortesEntreFicheros_;
    QHash<QString, qint64> frenos_; ///< key "" = every service
    QHash<QString, Pausa> pausas_;
    QHash<QString, QHash<QString, qint64>> cuentas_;
    QStringList eventos_;
};

} // namespace simulado
