#include "services/Telegram.h"

#include "core/SegundoPlano.h"
#include "platform/Llavero.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

using namespace Qt::StringLiterals;

namespace vellora::Telegram
{

namespace
{

const auto cuenta = u"es.zarabel.vellora.telegram"_s;
const QStringList ficheros{u"/.config/vellora/telegram.env"_s, u"/proyectos/.env"_s, u"/proyectos/scripts/.env"_s,
                           u"/Desktop/BRUMA/.env"_s, u"/.telegram.env"_s};
constexpr int milisegundosDeEspera = 20000;
constexpr qint64 tamanoMaximo = 1024LL * 1024;
constexpr int hecho = 200;

std::optional<Config> enElLlavero()
{
    const auto guardado = Llavero::leer(cuenta);
    const auto corte = guardado ? guardado->indexOf(u'|') : -1;
    if (corte < 1 || corte + 1 == guardado->size())
        return {};
    return Config{guardado->first(corte), guardado->sliced(corte + 1)};
}

/// The address of the method; absent when the token makes none.
std::optional<QUrl> direccion(const QString &token)
{
    const auto servidor = qEnvironmentVariable("VELLORA_TELEGRAM", u"https://api.telegram.org"_s);
    const QUrl url(servidor + u"/bot"_s + token + u"/sendMessage"_s, QUrl::StrictMode);
    return url.isValid() && url.scheme() == "https"_L1 ? std::optional(url) : std::nullopt;
}

std::optional<QString> fallo(const QNetworkReply &respuesta, const QString &token)
{
    const auto estado = respuesta.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!estado.isValid())
        return respuesta.errorString().replace(token, u"…"_s); // an address may stand in it
    return estado.toInt() == hecho ? std::nullopt : std::optional(u"Telegram devolvió %1"_s.arg(estado.toInt()));
}

} // namespace

std::optional<Config> enFichero(const QString &ruta)
{
    QFile fichero(ruta);
    if (!fichero.open(QIODevice::ReadOnly))
        return {};
    const auto tomar = [](QString &donde, const QString &linea, const QString &clave) {
        if (linea.startsWith(clave))
            donde = linea.sliced(clave.size());
    };
    Config hallada;
    const auto lineas = QString::fromUtf8(fichero.read(tamanoMaximo)).split(u'\n');
    for (const auto &linea : lineas) {
        tomar(hallada.token, linea.trimmed(), u"TELEGRAM_BOT_TOKEN="_s);
        tomar(hallada.chat, linea.trimmed(), u"TELEGRAM_CHAT_ID="_s);
    }
    return hallada.token.isEmpty() || hallada.chat.isEmpty() ? std::nullopt : std::optional(hallada);
}

std::optional<Config> configuracion()
{
    if (auto guardada = enElLlavero())
        return guardada;
    for (const auto &fichero : ficheros) {
        if (auto hallada = enFichero(QDir::homePath() + fichero))
            return hallada;
    }
    return {};
}

bool guardar(const QString &token, const QString &chat)
{
    return Llavero::guardar(token + u'|' + chat, cuenta);
}

void olvidar()
{
    Llavero::borrar(cuenta);
}

void enviar(QObject *contexto, const QString &texto,
            const std::function<void(const std::optional<QString> &)> &completado)
{
    // The store of secrets may take its time to answer.
    enSegundoPlano(contexto, &configuracion, [=](const std::optional<Config> &cual) {
        if (!cual)
            return completado(u"No hay Telegram configurado."_s);
        const auto url = direccion(cual->token);
        if (!url)
            return completado(u"La configuración de Telegram no vale."_s);
        QNetworkRequest peticion(*url);
        peticion.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
        peticion.setTransferTimeout(milisegundosDeEspera);
        // The address holds the token: nobody sends it elsewhere.
        peticion.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        const QJsonObject cuerpo{{u"chat_id"_s, cual->chat}, {u"text"_s, texto}};
        auto *red = new QNetworkAccessManager(contexto);
        auto *respuesta = red->post(peticion, QJsonDocument(cuerpo).toJson(QJsonDocument::Compact));
        QObject::connect(respuesta, &QNetworkReply::finished, contexto, [=, token = cual->token] {
            red->deleteLater();
            completado(fallo(*respuesta, token));
        });
    });
}

} // namespace vellora::Telegram
