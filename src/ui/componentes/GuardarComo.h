#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace vellora
{

/// The system's own dialogue for where to keep a file.
class GuardarComo : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString titulo MEMBER titulo)
    Q_PROPERTY(QString filtro MEMBER filtro)
    Q_PROPERTY(QString extension MEMBER extension)

public:
    using QObject::QObject;

    /// Offers that name. Nothing happens when the owner closes the dialogue.
    Q_INVOKABLE void abrir(const QString &nombre);

signals:
    void elegido(const QString &fichero);

private:
    QString titulo;
    QString filtro;    ///< "PDF (*.pdf)"
    QString extension; ///< added to a name without one
};

} // namespace vellora
