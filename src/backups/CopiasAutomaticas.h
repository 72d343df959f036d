#pragma once

#include "session/Dispositivo.h"

#include <QObject>
#include <QSet>
#include <QString>

#include <optional>

namespace vellora
{

class Copias;
class Modelo;

/// The two ways in which a backup is made without being asked for: every week by the system, and when a known phone is
/// plugged in while the program is open. Main thread only.
class CopiasAutomaticas : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool semanal READ semanal NOTIFY cambio)
    Q_PROPERTY(bool ocupada READ ocupada NOTIFY cambio)
    Q_PROPERTY(bool alEnchufar READ alEnchufar NOTIFY cambio)
    Q_PROPERTY(QString edad READ edad NOTIFY cambio)
    Q_PROPERTY(QString aviso READ aviso NOTIFY cambio)
    Q_PROPERTY(QString ultimaSemanal READ ultimaSemanal NOTIFY cambio)
    Q_PROPERTY(QString avisoAlEnchufar READ avisoAlEnchufar NOTIFY cambio)

public:
    CopiasAutomaticas(Modelo &elModelo, Copias &lasCopias, QObject *padre = nullptr);

    bool semanal() const { return semanal_; }
    /// While the system is asked.
    bool ocupada() const { return ocupada_; }
    /// "Última copia: hoy", "Última copia: hace 3 días"; empty without a backup.
    QString edad() const;
    /// What came of the last switch of the weekly one; empty when there is nothing to say.
    QString aviso() const { return aviso_; }
    /// What came of the last weekly one; empty when none ran. Read anew by `mirarSemanal`.
    QString ultimaSemanal() const { return ultimaSemanal_; }
    Q_INVOKABLE void mirarSemanal();
    /// Why plugging the phone in starts no backup today; empty when there is nothing to say.
    QString avisoAlEnchufar() const { return avisoAlEnchufar_; }
    /// For the selected phone; without one nothing changes.
    Q_INVOKABLE void ponSemanal(bool encendida);

    bool alEnchufar() const;
    Q_INVOKABLE void ponAlEnchufar(bool encendida);

    /// A refresh has been applied; `antes` is the UDID selected before it. Weighs a backup of a phone that has just
    /// appeared, and forgets those that have left.
    void trasRefrescar(const std::optional<QString> &antes);

signals:
    void cambio();

private:
    void quizaCopiaAutomatica(const Dispositivo &iphone);

    Modelo &modelo;
    Copias &copias;
    bool semanal_;
    bool ocupada_ = false;
    QString aviso_;
    QString ultimaSemanal_;
    QString avisoAlEnchufar_;
    QSet<QString> yaAutoCopiados; ///< UDIDs weighed since they were plugged in
};

} // namespace vellora
