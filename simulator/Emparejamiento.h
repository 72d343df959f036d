#pragma once

#include "Ajustes.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QVariantMap>

#include <memory>
#include <mutex>

namespace simulado
{

class Identidad;

/// Trust between the phone and the computer: which hosts the phone knows, and the record that the computer's daemon
/// keeps (CARPETA/<UDID>.plist, mode 0600). Every member may be called from any thread.
class Emparejamiento
{
public:
    Emparejamiento(const AjustesTelefono &ajustes, std::shared_ptr<const Identidad> identidad, const QString &carpeta);
    /// Makes the record of a trusted phone when there is none, and drops that of one that is not trusted.
    void cargar(const QString &wifi);

    /// The computer's side, as bytes of a property list; empty when there is none.
    QByteArray registro() const;
    void guardarRegistro(const QByteArray &registro);
    void borrarRegistro();

    /// The phone's side.
    bool conoceA(const QString &hostId) const;
    /// Empty when the phone accepts the host; otherwise the lockdown error.
    QString emparejar(const QString &hostId);
    void desemparejar(const QString &hostId);
    /// The owner's answer. With `conRegistro` the computer's record is made too, as if a tool had already paired.
    void responder(Confianza confianza, bool conRegistro);
    /// The phone forgets every host; the computer forgets the phone too unless `conservarRegistro`.
    void olvidar(bool conservarRegistro);

private:
    void crearRegistro();

    const QString udid_;
    const QString ruta_;
    const std::shared_ptr<const Identidad> identidad_;
    mutable std::mutex mutex_;
    Confianza confianza_;
    QSet<QString> hosts_;
    QByteArray registro_;
    QString wifi_;
};

} // namespace simulado
