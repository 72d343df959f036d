#pragma once

#include <QQuickImageProvider>

namespace vellora
{

class Contactos;

/// "image://contactos/N/ID": the photo of a person of the phone's address book, decoded at the size that is asked for.
class FotosDeContactos : public QQuickImageProvider
{
public:
    /// `losContactos` must outlive the engine that the provider belongs to.
    explicit FotosDeContactos(const Contactos &losContactos);
    static bool esImagen(const QByteArray &bytes);
    QImage requestImage(const QString &id, QSize *tamano, const QSize &pedido) override;

private:
    const Contactos &contactos;
};

} // namespace vellora
