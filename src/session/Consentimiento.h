#pragma once

#include "session/Cerradura.h"

#include <QObject>
#include <QString>

#include <functional>
#include <list>
#include <optional>

namespace vellora
{

class Modelo;

/// What the owner is asked before something is destroyed or changed.
struct Pregunta {
    QString titulo;
    QString texto;
    QString aceptar;                                    ///< the button that does it
    QString dejar;                                      ///< the way out, where the keyboard begins
    Cerradura::Motivo motivo = Cerradura::AbrirVellora; ///< what the system's own check of the owner is asked for
    QString udid;                                       ///< of the phone that it is for; empty when it is for none
    /// Looked at when the owner accepts and again after the check: why what was asked no longer holds, as a sentence
    /// for the owner; absent while it does. Empty where nothing but the phone and the job could have changed.
    std::function<std::optional<QString>()> porQueYaNo;
    std::function<void()> hacer;
};

/// The one place where the owner's word is asked for: a question at a time, bound to its phone, then the system's check
/// of the owner, then a last look that all of it still holds, then the act. A question whose phone leaves, or gives its
/// place to another, closes unanswered. When something agreed to is not done after all, the owner is told so. Also
/// shows plain notices, which wait for a question to be answered. Main thread only.
class Consentimiento : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool abierto READ abierto NOTIFY cambio)
    Q_PROPERTY(QString titulo READ titulo NOTIFY cambio)
    Q_PROPERTY(QString texto READ texto NOTIFY cambio)
    Q_PROPERTY(QString aceptar READ rotuloDeAceptar NOTIFY cambio)
    Q_PROPERTY(QString dejar READ rotuloDeDejar NOTIFY cambio)
    Q_PROPERTY(QString aQuien READ aQuien NOTIFY cambio)
    Q_PROPERTY(QString aviso READ aviso NOTIFY cambio)

public:
    Consentimiento(Modelo &elModelo, Cerradura &laCerradura, QObject *padre = nullptr);

    /// Asks, at once or when the question before it has been answered. For a phone that is not the selected one
    /// nothing is asked.
    void plantear(Pregunta pregunta);
    /// Asks the system alone, where pressing the button was already the owner's word.
    void confirmar(Pregunta pregunta);
    /// A text that stands until it is closed.
    void avisar(const QString &texto);

    bool abierto() const { return !preguntas.empty(); }
    QString titulo() const { return abierto() ? preguntas.front().pregunta.titulo : QString(); }
    QString texto() const { return abierto() ? preguntas.front().pregunta.texto : QString(); }
    /// Name, model and end of the identifier of the phone that is asked about; empty when it is about none.
    QString aQuien() const { return abierto() ? preguntas.front().aQuien : QString(); }
    /// The notice that stands; empty when there is none.
    QString aviso() const { return abierto() || avisos.isEmpty() ? QString() : avisos.first(); }

    Q_INVOKABLE void responder(bool aceptada);
    Q_INVOKABLE void cerrarAviso();

signals:
    void cambio();

private:
    struct Planteada {
        Pregunta pregunta;
        QString aQuien;
    };

    QString rotuloDeAceptar() const { return abierto() ? preguntas.front().pregunta.aceptar : QString(); }
    QString rotuloDeDejar() const { return abierto() ? preguntas.front().pregunta.dejar : QString(); }
    bool esDelElegido(const Pregunta &pregunta) const;
    std::optional<QString> porQueYaNo(const Pregunta &pregunta) const;
    void cerrarLasDeOtro();

    Modelo &modelo;
    Cerradura &cerradura;
    std::list<Planteada> preguntas; ///< the first one stands, the rest wait
    QStringList avisos;
};

} // namespace vellora
