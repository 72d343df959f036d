#include "core/EscritorDeTexto.h"
#include "extraction/Extraccion.h"
#include "extraction/Grupos.h"
#include "extraction/Medios.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

constexpr auto consultaMensajes = "SELECT IFNULL(h.id,'Desconocido'), m.date, m.is_from_me, IFNULL(m.text,'') "
                                  "FROM message m "
                                  "LEFT JOIN handle h ON h.ROWID = m.handle_id "
                                  "WHERE m.text IS NOT NULL AND m.text <> ''";
constexpr auto ordenMensajes = "ORDER BY h.id, m.date";

constexpr auto consultaWhatsApp = "SELECT IFNULL(s.ZPARTNERNAME, s.ZCONTACTJID), m.ZMESSAGEDATE, "
                                  "m.ZISFROMME, IFNULL(m.ZTEXT,'') "
                                  "FROM ZWAMESSAGE m "
                                  "JOIN ZWACHATSESSION s ON s.Z_PK = m.ZCHATSESSION";
constexpr auto ordenWhatsApp = "ORDER BY s.ZPARTNERNAME, m.ZMESSAGEDATE";

/// "[dd/MM/yyyy HH:mm] SENDER: TEXT" for each row of other party, date, own, text; one file for each other party.
Grupos::Total escribirConversaciones(const BaseDelTelefono &base, const char *consulta, const char *orden,
                                     const QByteArray &sinTexto, CarpetaDeDestino &carpeta, const QByteArray &relativa)
{
    Grupos grupos(carpeta, relativa);
    QByteArray linea;
    QByteArray otro;
    base.porCadaFila(consulta, orden, [&](const Fila &fila) {
        otro.resize(0);
        ponerTextoLimpio(otro, fila.utf8(0));
        linea.resize(0);
        linea += '[';
        ponerFecha(linea, fila, 1);
        linea += "] ";
        linea += fila.utf8(2) == QByteArrayView("1") ? QByteArrayView("YO") : QByteArrayView(otro);
        linea += ": ";
        const auto antes = linea.size();
        ponerTexto(linea, fila, 3);
        if (linea.size() == antes)
            linea += sinTexto;
        grupos.linea(otro, linea);
    });
    return grupos.cerrar();
}

std::optional<QString> chatsDeWhatsApp(const QString &desde, CarpetaDeDestino &carpeta)
{
    const auto base = abrirPublico(buscarPublico(u"ChatStorage.sqlite"_s, desde + u"/WhatsApp"_s));
    if (!base)
        return {};
    const auto total = escribirConversaciones(*base, consultaWhatsApp, ordenWhatsApp, "(foto, audio o adjunto)",
                                              carpeta, "WhatsApp/Chats");
    if (total.filas == 0)
        return {};
    return u"WhatsApp: %1 mensajes en %2 chats"_s.arg(total.filas).arg(total.grupos);
}

} // namespace

std::optional<QString> mensajes(const QString &desde, const QString &a)
{
    const auto base = abrirPublico(buscarPublico(u"sms.db"_s, desde));
    auto carpeta = CarpetaDeDestino::abrir(a);
    if (!base || !carpeta)
        return {};
    const auto total = escribirConversaciones(*base, consultaMensajes, ordenMensajes, {}, *carpeta, "Mensajes");
    if (total.filas == 0)
        return {};
    return u"Mensajes: %1 en %2 conversaciones (carpeta Mensajes)"_s.arg(total.filas).arg(total.grupos);
}

std::optional<QString> whatsapp(const QString &desde, const QString &a)
{
    auto carpeta = CarpetaDeDestino::abrir(a);
    if (!carpeta)
        return {};
    QStringList lineas;
    if (const auto chats = chatsDeWhatsApp(desde, *carpeta))
        lineas << *chats;
    const auto medios = copiarMedios(desde + u"/WhatsApp/Media"_s, *carpeta, "WhatsApp", "Fotos y audios");
    if (medios > 0)
        lineas << u"WhatsApp: %1 fotos, audios y vídeos"_s.arg(medios);
    return lineas.isEmpty() ? std::nullopt : std::optional(lineas.join(u'\n'));
}

} // namespace vellora::Extraccion
