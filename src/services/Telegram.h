#pragma once

#include <QString>

#include <functional>
#include <optional>

class QObject;

/// Messages to the owner through a Telegram bot of their own, the only ones that leave the computer and only when the
/// owner switched them on. What the bot is called by is looked for anew at each use, which asks the store of secrets
/// and reads files: all but `enviar` block, and are for background threads.
namespace vellora::Telegram
{

struct Config {
    QString token;
    QString chat;
    bool operator==(const Config &) const = default;
};

/// From the store of secrets or, without it there, from the first of a few files of the home folder that has both.
std::optional<Config> configuracion();
/// Whether the store of secrets took them.
bool guardar(const QString &token, const QString &chat);
/// Takes them out of the store; the files count again.
void olvidar();

/// Sends in the background. `completado` is called once, unless `contexto` has gone by then: with nothing when the
/// message is sent, otherwise with a sentence. VELLORA_TELEGRAM puts another address in the place of Telegram's, for
/// tests. Main thread only.
void enviar(QObject *contexto, const QString &texto,
            const std::function<void(const std::optional<QString> &)> &completado);

/// What a file of settings says; absent unless it names both.
std::optional<Config> enFichero(const QString &ruta);

} // namespace vellora::Telegram
