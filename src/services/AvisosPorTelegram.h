#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace vellora
{

class Tarea;

/// The switch, the form and the messages of the notices by Telegram, as the window sees them. Main thread only.
class AvisosPorTelegram : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool encendido READ encendido NOTIFY cambio)
    Q_PROPERTY(bool configurado READ configurado NOTIFY cambio)
    Q_PROPERTY(bool pidiendoDatos READ pidiendoDatos NOTIFY cambio)
    Q_PROPERTY(bool probando READ probando NOTIFY cambio)
    Q_PROPERTY(bool datosValen READ datosValen NOTIFY cambioDeDatos)
    Q_PROPERTY(QString token MEMBER token NOTIFY cambioDeDatos)
    Q_PROPERTY(QString chat MEMBER chat NOTIFY cambioDeDatos)
    Q_PROPERTY(QString aviso READ aviso NOTIFY cambio)

public:
    static constexpr qsizetype minimoDelToken = 20;

    explicit AvisosPorTelegram(QObject *padre = nullptr);

    bool encendido() const { return encendido_; }
    /// As `mirar` found it last.
    bool configurado() const { return configurado_; }
    bool pidiendoDatos() const { return pidiendoDatos_; }
    bool probando() const { return probando_; }
    /// Of the form.
    bool datosValen() const;
    /// What came of the last test; empty when there is nothing to say.
    const QString &aviso() const { return aviso_; }

    /// Looks again for what the bot is called by: views call it when they come up.
    Q_INVOKABLE void mirar()
    {
        mirar([] {});
    }
    /// Without a configuration, turning it on asks for one, as soon as that is known.
    Q_INVOKABLE void poner(bool encendidos);
    Q_INVOKABLE void pedirDatos();
    Q_INVOKABLE void guardarDatos();
    Q_INVOKABLE void cancelarDatos();
    Q_INVOKABLE void probar();

    /// Waits for the end of the job that runs: `texto` goes out when it ends well, a word of warning when it does not.
    /// Nothing while the notices are off or not configured, nor after more than four hours.
    void avisarAlTerminar(Tarea &tarea, const QString &texto);

signals:
    void cambio();
    void cambioDeDatos();

private:
    void olvidarDatos();
    /// The same, and `despues` before the change is told.
    void mirar(const std::function<void()> &despues);

    int vuelta = 0;
    bool encendido_;
    bool configurado_ = false;
    bool pidiendoDatos_ = false;
    bool probando_ = false;
    QString token;
    QString chat;
    QString aviso_;
};

} // namespace vellora
