#pragma once

#include "backups/Catalogo.h"
#include "platform/Llavero.h"
#include "session/Consentimiento.h"
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
    Q_PROPERTY(QString clave MEMBER clave NOTIFY cambioDeClave)
    Q_PROPERTY(QString claveRepetida MEMBER claveRepetida NOTIFY cambioDeClave)
    Q_PROPERTY(bool claveVale READ claveVale NOTIFY cambioDeClave)

public:
    /// What the store of secrets says of the password of a UDID's backups; called on other threads, where it may wait.
    using Consulta = std::function<Llavero::Estado(const QString &udid)>;

    Copias(Modelo &modelo, Consulta consulta, QObject *padre = nullptr);

    /// What may be believed of the selected phone's backup; without a phone, of the one in view.
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

    /// The guarded entry for the owner's request of a full backup. Where the store has no password yet the owner is
    /// asked for one; a store that cannot be asked is none that has no password, and the backup begins all the same: it
    /// is stopped when the phone says that it would not be encrypted.
    Q_INVOKABLE void pedirCopia();
    /// The same without asking the store: what cannot be asked of anybody is not asked.
    void hacerCopia(bool sinCifrar);

    /// Whether the owner has said of this phone that its backups may be made without encryption.
    static bool admiteSinCifrar(const QString &udid);
    static void ponSinCifrar(const QString &udid);
    /// Asks the owner so, after a backup that was stopped.
    void preguntarSinCifrar(const QString &udid);
    Q_INVOKABLE void abrirCarpeta();

    /// True when any process of the computer makes a backup with idevicebackup2, whatever phone it serves.
    static bool hayOtraCopiaEnMarcha();

signals:
    void cambio();
    /// A backup that the owner asked for has begun; the text tells of its good end.
    void copiaEmpezada(const QString &alAcabar);
    void cambioDeClave();
    /// What the owner has to be asked before it goes on.
    void preguntar(const vellora::Pregunta &pregunta);

private:
    bool puedeEmpezar();
    void decidir(const Dispositivo &telefono, Llavero::Estado estado);
    void empezar(const QString &udid, const QString &alAcabar, bool sinCifrar, bool aunqueFalteSitio = false);
    void preguntarPorElSitio(const QString &udid, const QString &texto);
    void ensenarClave(const QString &udid, const QString &perdida);
    void mirarElLlavero();
    void recuperar();
    void quizaComprobar();
    void olvidarClaveDeOtro();

    Modelo &modelo;
    Consulta consulta;
    QSet<QString> miradas; ///< backups of others, or of older versions, that were looked into since the start
    QSet<QString> rotas;   ///< those among them that are not whole
    bool mirando = false;
    QString consultado; ///< UDID whose answer stands in `enElLlavero`; empty before the first
    std::optional<Llavero::Estado> enElLlavero;
    bool consultando = false;           ///< for a request of the owner
    std::optional<Dispositivo> claveDe; ///< while the question for a password is open
    QString clave;                      ///< typed words, empty unless the question is open
    QString claveRepetida;
};

} // namespace vellora
