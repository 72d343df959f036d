#pragma once

#include "backups/Catalogo.h"
#include "session/Dispositivo.h"

#include <QDateTime>
#include <QObject>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>

namespace vellora
{

class Modelo;

/// What the window and the commands see of the backups: the warning, the age of the last one, and the owner's requests.
/// Main thread only.
class Copias : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString aviso READ avisoTexto NOTIFY cambio)
    Q_PROPERTY(QString ultimaCopia READ ultimaCopia NOTIFY cambio)
    Q_PROPERTY(QString pieDeHacerCopia READ pieDeHacerCopia NOTIFY cambio)
    Q_PROPERTY(bool pidiendoClave READ pidiendoClave NOTIFY cambio)
    Q_PROPERTY(QString claveDeQuien READ claveDeQuien NOTIFY cambio)
    Q_PROPERTY(QString preguntaDeSitio READ preguntaDeSitio NOTIFY cambio)
    Q_PROPERTY(QString clave MEMBER clave NOTIFY cambioDeClave)
    Q_PROPERTY(QString claveRepetida MEMBER claveRepetida NOTIFY cambioDeClave)
    Q_PROPERTY(bool claveVale READ claveVale NOTIFY cambioDeClave)

public:
    /// Whether a backup password is stored for a UDID; absent when there is no store to ask.
    using HayClave = std::function<std::optional<bool>(const QString &udid)>;

    Copias(Modelo &modelo, HayClave hayClave, QObject *padre = nullptr);

    /// What may be believed of the selected phone's backup; without a phone, that there is none.
    Catalogo::Estado estado() const;
    /// Of the selected phone, or without one of the youngest in view; absent without a backup that counts.
    std::optional<QDateTime> fechaDeLaUltimaCopia() const;
    std::optional<qint64> diasDesdeLaCopia() const;
    /// The same of a backup that has finished, checked or not: what need not be made again yet.
    std::optional<qint64> diasDesdeLaAcabada() const;
    /// The warning strip's sentence; empty when the last backup is recent or no phone is selected.
    QString avisoTexto() const;
    /// "hoy", "hace 1 día", "hace 21 días", or "nunca"; says so when it was not checked.
    QString ultimaCopia() const;
    /// What the backup will hold, under the button; empty when it is not known.
    QString pieDeHacerCopia() const;
    bool pidiendoClave() const { return claveDe.has_value(); }
    /// Name of the phone that the question for a password is about; empty unless it is open.
    QString claveDeQuien() const { return claveDe ? claveDe->nombre : QString(); }
    /// Long enough and typed twice alike; nothing else is asked of it.
    bool claveVale() const;
    /// The answer to the question for a password. The typed words are forgotten at once; accepted, they switch on the
    /// encryption of the phone that was asked about, and the backup follows. The question closes when that phone leaves
    /// or another is chosen.
    Q_INVOKABLE void resolverClave(bool aceptada);

    /// The guarded entry for the owner's request of a full backup.
    Q_INVOKABLE void pedirCopia();
    /// Why the last one was not begun for want of room, as a question; empty when that is not so.
    QString preguntaDeSitio() const { return preguntaDeSitio_; }
    Q_INVOKABLE void resolverSitio(bool aceptada);
    Q_INVOKABLE void abrirCarpeta();

    /// True when any process of the computer makes a backup with idevicebackup2, whatever phone it serves.
    static bool hayOtraCopiaEnMarcha();

signals:
    void cambio();
    /// A backup that the owner asked for has begun; the text tells of its good end.
    void copiaEmpezada(const QString &alAcabar);
    void cambioDeClave();

private:
    void empezar(const QString &udid, const QString &alAcabar, bool aunqueFalteSitio = false);
    void recuperar();
    void quizaComprobar();
    void olvidarClaveDeOtro();

    Modelo &modelo;
    HayClave hayClave;
    QSet<QString> miradas; ///< backups of others, or of older versions, that were looked into since the start
    QSet<QString> rotas;   ///< those among them that are not whole
    bool mirando = false;
    QString preguntaDeSitio_;
    QString udidDelSitio;               ///< of the phone that the question is about
    std::optional<Dispositivo> claveDe; ///< while the question for a password is open
    QString clave;                      ///< typed words, empty unless the question is open
    QString claveRepetida;
};

} // namespace vellora
