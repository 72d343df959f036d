#pragma once

#include <QDBusVariant>
#include <QObject>

namespace vellora
{

/// Whether the desktop asks for dark windows: the settings portal of the session bus ("org.freedesktop.appearance",
/// "color-scheme", 1 = dark), followed while it changes. False where there is no portal. Main thread only.
class Apariencia : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool sistemaOscuro READ sistemaOscuro NOTIFY cambio)

public:
    explicit Apariencia(QObject *padre = nullptr);
    bool sistemaOscuro() const { return oscuro; }

signals:
    void cambio();

private slots:
    void ajusteCambiado(const QString &espacio, const QString &clave, const QDBusVariant &valor);

private:
    void aplicar(const QVariant &valor);
    bool oscuro = false;
};

} // namespace vellora
