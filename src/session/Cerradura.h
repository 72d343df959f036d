#pragma once

#include "platform/ComprobacionDelDueno.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <functional>

namespace vellora
{

/// Keeps what the program shows behind the system's own check of its owner, closes again after five minutes without
/// use, and has each destructive action confirmed the same way. A computer that never had a way to check locks nobody
/// out, and says so; once the owner has passed a check on it, which the settings remember, a check that is gone, silent
/// or without a window is one that failed. Main thread only.
class Cerradura : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool abierta READ abierta NOTIFY cambio)
    Q_PROPERTY(bool comprobando READ comprobando NOTIFY cambio)
    Q_PROPERTY(QString motivoFallo READ motivoFallo NOTIFY cambio)
    Q_PROPERTY(QString metodo READ metodo NOTIFY cambio)
    Q_PROPERTY(QString promesa READ promesa NOTIFY cambio)
    Q_PROPERTY(QString promesaCorta READ promesaCorta NOTIFY cambio)

public:
    static constexpr int minutosInactividad = 5;

    /// What the owner is asked for; each has its sentence in the action file.
    enum Motivo {
        AbrirVellora,
        BorrarCopiadas,
        DevolverCopia,
        Apagar,
        Reiniciar,
        BorrarTodasLasFotos,
        BorrarDelOrdenador,
        BorrarFotos,
        DesinstalarUna,
        DesinstalarVarias,
        BorrarDatos,
        VerContrasenas,
        HacerCopia
    };
    Q_ENUM(Motivo)

    explicit Cerradura(QObject *padre = nullptr);

    bool abierta() const { return abierta_; }
    /// While the system's question stands.
    bool comprobando() const { return comprobando_; }
    /// Why the last opening failed; empty when it did not, or the owner closed the question.
    const QString &motivoFallo() const { return motivoFallo_; }
    /// "tu huella" or "la contraseña del Mac".
    QString metodo() const;
    /// What the window may promise of the lock, as a sentence and as the words under its button.
    QString promesa() const;
    QString promesaCorta() const;

    Q_INVOKABLE void abrir();
    /// Does nothing on a computer that could not open it again.
    Q_INVOKABLE void cerrarAhora();
    Q_INVOKABLE void marcarUso() { ponUltimoUso(QDateTime::currentDateTimeUtc()); }
    void ponUltimoUso(const QDateTime &momento) { ultimoUso = momento; }
    /// `alResponder` is called once: true when the owner agreed, or when this computer never had a way to ask.
    void confirmar(Motivo motivo, const std::function<void(bool)> &alResponder);

    /// Closes when the last use is more than five minutes old, which is looked at every half minute.
    void revisarInactividad();

signals:
    void cambio();

private:
    using Respuesta = ComprobacionDelDueno::Respuesta;

    /// Looks for a check and asks it. `SinPreguntar` comes only where there never was one.
    void preguntar(Motivo motivo, const std::function<void(Respuesta)> &alResponder);
    void contestada(Respuesta respuesta);

    ComprobacionDelDueno comprobacion;
    bool abierta_ = false;
    bool comprobando_ = false;
    bool sinComprobacion = false; ///< this computer has no check, and never had one
    bool ausente = false;         ///< there was one when the owner last passed it
    bool porHuella = false;
    QString motivoFallo_;
    QDateTime ultimoUso; ///< by the clock on the wall, which goes on while the computer sleeps
    QTimer vigilante;
};

} // namespace vellora
