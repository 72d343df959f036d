#include "core/EscritorDeTexto.h"
#include "extraction/Extraccion.h"
#include "extraction/Grupos.h"
#include "extraction/Medios.h"
#include "extraction/Renglones.h"
#include "extraction/TextoConAtributos.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace vellora::Extraccion
{

namespace
{

// Columns of both queries: the other party, date, own, text, the body where there is no text, what tells chats apart
// (nothing where the other party does), thrown away by the owner.
enum Columna { Otro, Cuando, Mio, Texto, Cuerpo, Clave, Tirado };

constexpr auto ordenMensajes = "ORDER BY h.id, m.date";
constexpr auto consultaWhatsApp = "SELECT IFNULL(s.ZPARTNERNAME, s.ZCONTACTJID), m.ZMESSAGEDATE, "
                                  "m.ZISFROMME, IFNULL(m.ZTEXT,''), NULL, s.Z_PK, 0 "
                                  "FROM ZWAMESSAGE m "
                                  "JOIN ZWACHATSESSION s ON s.Z_PK = m.ZCHATSESSION";
constexpr auto ordenWhatsApp = "ORDER BY s.ZPARTNERNAME, m.ZMESSAGEDATE";
// What somebody shows to everybody comes as a chat of that person's name; the talk with them has the name first.
constexpr auto sesionesDeWhatsApp =
    "SELECT IFNULL(ZPARTNERNAME, ZCONTACTJID), Z_PK, IFNULL(ZCONTACTJID LIKE '%@status' OR "
    "ZCONTACTJID LIKE '%@lid.status' OR ZCONTACTJID = 'status@broadcast', 0) FROM ZWACHATSESSION "
    "WHERE Z_PK IN (SELECT ZCHATSESSION FROM ZWAMESSAGE)";
constexpr auto ordenDeSesiones = "ORDER BY 3, Z_PK";

QByteArray consultaMensajes(const BaseDelTelefono &base)
{
    // Newer systems leave the text of ever more messages to the body alone.
    const bool conCuerpo = base.columnas("message").contains("attributedBody");
    // What the owner deletes stays for a month, and belongs to no chat meanwhile.
    const bool conPapelera = base.hay("SELECT 1 FROM chat_recoverable_message_join LIMIT 1") &&
                             base.columnas("chat_message_join").contains("message_id");
    const QByteArray conTexto("(m.text IS NOT NULL AND m.text <> '')");
    return "SELECT IFNULL(h.id,'Desconocido'), m.date, m.is_from_me, IFNULL(m.text,''), " +
           (conCuerpo ? "CASE WHEN " + conTexto + " THEN NULL ELSE m.attributedBody END" : QByteArray("NULL")) +
           ", NULL, " +
           (conPapelera ? "m.ROWID IN (SELECT message_id FROM chat_recoverable_message_join) AND "
                          "IFNULL(m.ROWID IN (SELECT message_id FROM chat_message_join), 0) = 0"
                        : "0") +
           " FROM message m LEFT JOIN handle h ON h.ROWID = m.handle_id WHERE " + conTexto +
           (conCuerpo ? " OR m.attributedBody IS NOT NULL" : "");
}

/// How somebody signs their lines. The word that stands for the owner is nobody else's.
QByteArray firmaDe(const QByteArray &nombre)
{
    QByteArray firma;
    Renglones::ponerEnUno(firma, nombre);
    const auto visto = QString::fromUtf8(firma).trimmed();
    return visto == "YO"_L1 || visto.startsWith("YO:"_L1) ? '~' + firma : firma;
}

/// Writes rows as "[dd/MM/yyyy HH:mm] SENDER: TEXT", one file for each chat.
class Conversador
{
public:
    Conversador(CarpetaDeDestino &carpeta, const QByteArray &relativa, QByteArray loQueNoEsTexto)
        : vivos(carpeta, relativa)
        , tirados(carpeta, carpetaDeLoEliminado + relativa, primeroDeLosTirados)
        , sinTexto(std::move(loQueNoEsTexto))
    {
    }

    void fila(const Fila &fila)
    {
        const auto crudo = fila.utf8(Otro);
        if (otro.isNull() || crudo != otro) {
            otro = crudo.toByteArray();
            limpio.resize(0);
            ponerTextoLimpio(limpio, otro);
            firma = firmaDe(otro);
        }
        linea.resize(0);
        linea += '[';
        ponerFecha(linea, fila, Cuando);
        linea += "] ";
        linea += fila.utf8(Mio) == QByteArrayView("1") ? QByteArrayView("YO") : QByteArrayView(firma);
        linea += ": ";
        if (!texto(fila))
            return;
        const auto suya = fila.utf8(Clave);
        if (!suya.isEmpty() && suya != clave)
            clave = suya.toByteArray();
        (fila.entero(Tirado) != 0 ? tirados : vivos).linea(suya.isEmpty() ? otro : clave, limpio, linea);
    }

    Grupos vivos;
    Grupos tirados;

private:
    static constexpr int primeroDeLosTirados = 1'000'000'000;

    /// False for a row that says nothing and is left out.
    bool texto(const Fila &fila)
    {
        if (const auto suyo = fila.utf8(Texto); !suyo.isEmpty()) {
            Renglones::poner(linea, suyo);
            return true;
        }
        const auto cuerpo = fila.datos(Cuerpo);
        const auto leido = cuerpo.isEmpty() ? std::nullopt : TextoConAtributos::leer(cuerpo);
        if (leido && !leido->texto.isEmpty())
            Renglones::poner(linea, leido->texto);
        else if (!sinTexto.isEmpty())
            linea += sinTexto;
        else
            return false;
        return true;
    }

    QByteArray sinTexto;
    QByteArray clave;
    QByteArray otro;
    QByteArray limpio;
    QByteArray firma;
    QByteArray linea;
};

std::optional<QString> chatsDeWhatsApp(const QString &desde, CarpetaDeDestino &carpeta)
{
    const auto base = abrirPublico(buscarPublico(u"ChatStorage.sqlite"_s, desde + u"/WhatsApp"_s));
    if (!base)
        return {};
    Conversador conversador(carpeta, "WhatsApp/Chats", "(foto, audio o adjunto)");
    base->porCadaFila(sesionesDeWhatsApp, ordenDeSesiones, [&](const Fila &fila) {
        QByteArray nombre;
        ponerTextoLimpio(nombre, fila.utf8(0));
        if (fila.entero(2) != 0)
            nombre += " (estados)";
        conversador.vivos.reservar(fila.utf8(1).toByteArray(), nombre);
    });
    base->porCadaFila(consultaWhatsApp, ordenWhatsApp, [&](const Fila &fila) { conversador.fila(fila); });
    const auto total = conversador.vivos.cerrar(!base->danada());
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
    Conversador conversador(*carpeta, "Mensajes", {});
    base->porCadaFila(consultaMensajes(*base).constData(), ordenMensajes,
                      [&](const Fila &fila) { conversador.fila(fila); });
    QStringList lineas;
    if (const auto total = conversador.vivos.cerrar(!base->danada()); total.filas > 0)
        lineas << u"Mensajes: %1 en %2 conversaciones (carpeta Mensajes)"_s.arg(total.filas).arg(total.grupos);
    if (const auto total = conversador.tirados.cerrar(!base->danada()); total.filas > 0)
        lineas << u"Mensajes eliminados hace poco: %1 (carpeta Eliminado hace poco)"_s.arg(total.filas);
    return lineas.isEmpty() ? std::nullopt : std::optional(lineas.join(u'\n'));
}

std::optional<QString> whatsapp(const QString &desde, const QString &a)
{
    auto carpeta = CarpetaDeDestino::abrir(a);
    if (!carpeta)
        return {};
    QStringList lineas;
    if (const auto chats = chatsDeWhatsApp(desde, *carpeta))
        lineas << *chats;
    const auto medios = copiarMedios(desde + u"/WhatsApp/Media"_s, *carpeta, u"WhatsApp/Fotos y audios"_s);
    if (medios > 0)
        lineas << u"WhatsApp: %1 fotos, audios y vídeos"_s.arg(medios);
    return lineas.isEmpty() ? std::nullopt : std::optional(lineas.join(u'\n'));
}

} // namespace vellora::Extraccion
