#pragma once

#include <QObject>
#include <QString>
#include <qqmlregistration.h>

namespace vellora
{

/// The system's own dialogue to choose a folder, or make a new one.
class ElegirCarpeta : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString titulo MEMBER titulo)
    Q_PROPERTY(QString textoDeAceptar MEMBER textoDeAceptar)

public:
    using QObject::QObject;

    /// Opens at that folder, or at the nearest one above it that is there. Nothing happens when the owner closes it.
    Q_INVOKABLE void abrir(const QString &desde);

signals:
    void elegida(const QString &carpeta);

private:
    QString titulo;
    QString textoDeAceptar;
};

} // namespace vellora
