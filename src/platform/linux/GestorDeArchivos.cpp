#include "platform/GestorDeArchivos.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

void abrirConElEscritorio(const QString &ruta)
{
    const QFileInfo info(ruta);
    const auto carpeta = info.isDir() ? info.absoluteFilePath() : info.absolutePath();
    QProcess::startDetached(u"xdg-open"_s, {carpeta});
}

} // namespace

void mostrarEnElGestor(const QString &ruta)
{
    auto peticion =
        QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
                                       u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    peticion << QStringList{QUrl::fromLocalFile(ruta).toString(QUrl::FullyEncoded)} << QString();
    auto *espera = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(peticion));
    QObject::connect(espera, &QDBusPendingCallWatcher::finished, espera, [espera, ruta] {
        if (espera->isError())
            abrirConElEscritorio(ruta);
        espera->deleteLater();
    });
}

} // namespace vellora
