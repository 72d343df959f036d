#pragma once

#include "contenido/Base.h"
#include "contenido/Contexto.h"
#include "contenido/Esquemas.h"

namespace simulado
{

/// Since iOS 11 the dates of this database are whole nanoseconds since 2001.
inline qint64 nanos(qint64 unix)
{
    return (unix - principioApple) * 1'000'000'000;
}

/// Nobody writes at four in the morning: a day's 24 hours are laid out from 8:00 to 23:00, in the same order.
inline qint64 deDia(qint64 momento)
{
    return momento - momento % 86400 + 8 * 3600 + (momento % 86400) * 15 / 24;
}

struct CharlaDeMensajes {
    qint64 fila = 0;
    QString guid;
    QString sala; ///< empty for a chat of two
    bool sms = false;
    std::vector<qint64> miembros; ///< rows of handle
    qint64 quedan = 0;            ///< messages still to write
};

struct MensajeNuevo {
    qint64 remite = 0; ///< row of handle, 0 for none
    bool mio = false;
    qint64 momento = 0;
    std::optional<QString> texto;
    QByteArray cuerpo;
    bool adjunto = false;
    bool audio = false;
    int clase = 0; ///< item_type: 0 message, 1 someone joins, 2 the group is renamed
    QString titulo;
    QString reaccionA; ///< guid of the message that this one answers with a tapback
    int reaccion = 0;
    qint64 editado = 0;
};

class EscritorDeMensajes
{
public:
    explicit EscritorDeMensajes(Contexto &contexto)
        : c(contexto), a(contexto.azar("mensajes")), base(c.dominio("HomeDomain", QStringLiteral("Library/SMS/sms.db")))
    {
        base.ejecuta(esquemaSms);
        m_mensaje.emplace(
            base, "message",
            "guid, text, handle_id, attributedBody, version, service, account, account_guid, date, date_read, "
            "date_delivered, is_delivered, is_finished, is_from_me, is_read, is_sent, cache_has_attachments, "
            "cache_roomnames, is_audio_message, item_type, group_title, associated_message_guid, "
            "associated_message_type, destination_caller_id, date_edited, part_count");
        m_union.emplace(base, "chat_message_join", "chat_id, message_id, message_date");
    }

    void abreCharlas(qint64 total);
    void escribeTodo();
    void escribeRarezas();
    void cierra();

private:
    qint64 nuevoContacto(const QString &numero, bool sms);
    CharlaDeMensajes &nuevaCharla(const QString &identificador, const std::vector<qint64> &miembros,
                                  const QString &titulo, bool sms);
    void escribeDialogo(CharlaDeMensajes &charla, qint64 momento);
    std::pair<qint64, QString> mete(const CharlaDeMensajes &charla, const MensajeNuevo &m);
    void adjunta(qint64 mensaje, const MensajeNuevo &m);

    Contexto &c;
    Azar a;
    Base base;
    std::optional<Insercion> m_mensaje;
    std::optional<Insercion> m_union;
    std::vector<CharlaDeMensajes> m_charlas;
    int m_adjuntos = 0;
};

} // namespace simulado
