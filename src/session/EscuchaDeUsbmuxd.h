#pragma once

#include <QByteArray>
#include <QFileSystemWatcher>
#include <QHash>
#include <QIODevice>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <memory>

namespace vellora
{

/// Hears from usbmuxd which phones come, go and are trusted, so that nobody has to ask again and again. It listens to
/// usbmuxd only; the phone notices nothing of it. Where usbmuxd is not there yet, or has gone, its folder is watched.
/// Main thread only.
class EscuchaDeUsbmuxd : public QObject
{
    Q_OBJECT

public:
    enum class Estado {
        SinUsbmuxd, ///< nobody answers: no phone can be reached either
        Escuchando,
        SinAvisos ///< usbmuxd is there but gives no notices: the phones have to be asked for
    };

    explicit EscuchaDeUsbmuxd(QObject *padre = nullptr);
    ~EscuchaDeUsbmuxd() override;

    Estado estado() const { return estado_; }
    /// UDIDs on the cable, in the form that the tools print.
    QSet<QString> presentes() const;
    /// Tries again when usbmuxd was not there: a file that appeared unseen, a network that was down. Costs nothing.
    void reintentar();

signals:
    void llego(const QString &udid);
    /// A phone left or was trusted, or usbmuxd went: what was known of the phones holds no more.
    void cambio();

private:
    void conectar();
    void ponEnchufe(QIODevice *nuevo);
    void alConectar();
    void alCaer();
    void leer();
    bool atender(const QByteArray &cuerpo);
    void vigilar();

    std::unique_ptr<QIODevice> enchufe;
    QByteArray recibido;
    QHash<qint64, QString> porNumero; ///< usbmuxd's number of a phone on the cable, and its UDID
    Estado estado_ = Estado::SinUsbmuxd;
    QFileSystemWatcher vigilante;
    QTimer otraVez;
    int intentos = 0;
};

/// Where usbmuxd listens, as the tools take it: USBMUXD_SOCKET_ADDRESS ("UNIX:/path" or "host:port"), or its usual
/// place. `puerto` is 0 for a path.
struct DireccionDeUsbmuxd {
    QString donde;
    quint16 puerto = 0;
    bool operator==(const DireccionDeUsbmuxd &) const = default;
};
DireccionDeUsbmuxd direccionDeUsbmuxd();

} // namespace vellora
