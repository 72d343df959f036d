#pragma once

#include "platform/ComprobacionDelDueno.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <functional>

namespace vellora
{

/// Keeps what the program shows behind the system's own check of its owner, closes again after five minutes without
/// use, and has each destructive action confirmed the same way. Stores nothing. A computer without a way to check locks
/// nobody out. Main thread only.
class Cerradura : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool abierta READ abierta NOTIFY cambio)
    Q_PROPERTY(bool comprobando READ comprobando NOTIFY cambio)
    Q_PROPERTY(QString motivoFallo READ motivoFallo NOTIFY cambio)
    Q_PROPERTY(QString metodo READ metodo CONSTANT)

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
        VerContrasenas
    };
    Q_ENUM(Motivo)

    explicit Cerradura(QObject *padre = nullptr);

    bool abierta() const { return abierta_; }
    /// While the system's question stands.
    bool comprobando() const { return comprobando_; }
    /// Why the last opening failed; empty when it did not, or the owner closed the question.
    const QString &motivoFallo() const { return motivoFallo_; }
    static bool disponible() { return ComprobacionDelDueno::disponible(); }
    /// "tu huella" or "la contraseña del Mac".
    static QString metodo();

    Q_INVOKABLE void abrir();
    Q_INVOKABLE void cerrarAhora();
    Q_INVOKABLE void marcarUso() { ponUltimoUso(QDateTime::currentDateTimeUtc()); }
    void ponUltimoUso(const QDateTime &momento) { ultimoUso = momento; }
    /// `alResponder` is called once: true when the owner agreed, or when there is no way to ask.
    void confirmar(Motivo motivo, const std::function<void(bool)> &alResponder);

    /// Closes when the last use is more than five minutes old, which is looked at every half minute.
    void revisarInactividad();

signals:
    void cambio();

private:
    void contestada(ComprobacionDelDueno::Respuesta respuesta);

    ComprobacionDelDueno comprobacion;
    bool abierta_ = false;
    bool comprobando_ = false;
    QString motivoFallo_;
    QDateTime ultimoUso; ///< by the clock on the wall, which goes on while the computer sleeps
    QTimer vigilante;
};

} // namespace vellora
