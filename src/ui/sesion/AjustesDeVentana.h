#pragma once

#include <QObject>
#include <QRect>
#include <QString>
#include <qqmlregistration.h>

namespace vellora
{

/// What the owner chose of the window itself, kept between runs. Main thread only.
class AjustesDeVentana : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes it")
    Q_PROPERTY(QString tema READ tema WRITE ponTema NOTIFY cambio)
    Q_PROPERTY(bool iconoEnLaBarra READ iconoEnLaBarra WRITE ponIconoEnLaBarra NOTIFY cambio)
    Q_PROPERTY(bool seguirEnLaBarra READ seguirEnLaBarra WRITE ponSeguirEnLaBarra NOTIFY cambio)
    Q_PROPERTY(bool hayBarra READ hayBarra NOTIFY cambio)
    Q_PROPERTY(int seccion READ seccion WRITE ponSeccion NOTIFY cambio)

public:
    explicit AjustesDeVentana(QObject *padre = nullptr);

    /// "claro", "oscuro", or empty for the system's.
    const QString &tema() const { return tema_; }
    void ponTema(const QString &nuevo);

    bool iconoEnLaBarra() const { return iconoEnLaBarra_; }
    void ponIconoEnLaBarra(bool visible);
    /// Closing the window leaves the program in the bar; only while its icon can be seen there.
    bool seguirEnLaBarra() const { return seguirEnLaBarra_ && iconoEnLaBarra_ && hayBarra_; }
    void ponSeguirEnLaBarra(bool sigue);
    /// Whether the desktop has a bar for icons at all; the program tells.
    bool hayBarra() const { return hayBarra_; }
    void ponHayBarra(bool hay);

    /// The section in view when the program was last closed.
    int seccion() const { return seccion_; }
    void ponSeccion(int cual);
    /// Where the window stood; empty before the first time.
    QRect lugar() const;
    void ponLugar(const QRect &lugar);

signals:
    void cambio();

private:
    QString tema_;
    bool iconoEnLaBarra_;
    bool seguirEnLaBarra_;
    bool hayBarra_ = false;
    int seccion_;
};

} // namespace vellora
