#include "app/InstanciaUnica.h"

#include <QLocalSocket>
#include <QStandardPaths>

namespace vellora
{

namespace
{

constexpr int esperaMaxima = 1000; // milliseconds

/// In the folder of the person's session, which nobody else can enter.
QString camino()
{
    const auto carpeta = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return carpeta.isEmpty() ? QString() : carpeta + QStringLiteral("/vellora");
}

} // namespace

InstanciaUnica::InstanciaUnica(QObject *padre) : QObject(padre)
{
    servidor.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&servidor, &QLocalServer::newConnection, this, [this] {
        while (auto *otra = servidor.nextPendingConnection())
            otra->deleteLater();
        emit llamada();
    });
}

bool InstanciaUnica::yaHayOtra()
{
    if (camino().isEmpty())
        return false;
    QLocalSocket primera;
    primera.connectToServer(camino());
    if (primera.waitForConnected(esperaMaxima))
        return true;
    // Left behind by one that was ended.
    QLocalServer::removeServer(camino());
    servidor.listen(camino());
    return false;
}

} // namespace vellora
