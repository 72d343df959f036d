#include "contenido/CuerpoConAtributos.h"
#include "contenido/EscritorDeMensajes.h"
#include "contenido/Frases.h"
#include "contenido/Pintor.h"

#include <algorithm>
#include <numeric>

using namespace Qt::StringLiterals;

namespace simulado
{

qint64 EscritorDeMensajes::nuevoContacto(const QString &numero, bool sms)
{
    return Insercion(base, "handle", "id, country, service, uncanonicalized_id")
        .mete(numero, "es", sms ? "SMS" : "iMessage", nullptr);
}

CharlaDeMensajes &EscritorDeMensajes::nuevaCharla(const QString &identificador, const std::vector<qint64> &miembros,
                                                  const QString &titulo, bool sms)
{
    CharlaDeMensajes charla;
    const bool grupo = miembros.size() > 1;
    charla.sms = sms;
    charla.miembros = miembros;
    charla.sala = grupo ? identificador : QString();
    charla.guid = QLatin1String(sms ? "SMS" : "iMessage") + (grupo ? u";+;"_s : u";-;"_s) + identificador;
    charla.fila =
        Insercion(base, "chat",
                  "guid, style, state, account_id, chat_identifier, service_name, room_name, account_login, "
                  "last_addressed_handle, display_name, group_id, original_group_id, last_read_message_timestamp")
            .mete(charla.guid, grupo ? 43 : 45, 3, a.uuid(), identificador, sms ? "SMS" : "iMessage",
                  grupo ? std::optional(identificador) : std::nullopt, u"P:"_s + c.numeroPropio, c.numeroPropio, titulo,
                  a.uuid(), a.uuid(), nanos(ahoraDelTelefono));
    Insercion miembro(base, "chat_handle_join", "chat_id, handle_id");
    for (const auto fila : miembros)
        miembro.mete(charla.fila, fila);
    m_charlas.push_back(charla);
    return m_charlas.back();
}

void EscritorDeMensajes::abreCharlas(qint64 total)
{
    const size_t cuantas = c.segun<size_t>(6, 12, 70);
    std::vector<qint64> contactos;
    for (size_t i = 0; i < std::min(cuantas, c.gente.size()); ++i) {
        const auto &p = c.gente[i];
        const bool sms = i % 4 == 1;
        const auto quien = !p.telefonos.isEmpty() ? p.movil() : p.correos.value(0);
        contactos.push_back(nuevoContacto(quien, sms));
        nuevaCharla(quien, {contactos.back()}, {}, sms);
    }
    nuevaCharla(u"CORREOS"_s, {nuevoContacto(u"CORREOS"_s, true)}, {}, true);
    nuevaCharla(u"a/b"_s, {nuevoContacto(u"a/b"_s, true)}, {}, true);
    nuevaCharla(u"chat482019375566120"_s, {contactos[0], contactos[2], contactos[4]}, u"Finde en la sierra 🏔️"_s,
                false);
    nuevaCharla(u"chat918273645500321"_s, {contactos[1], contactos[5]}, {}, false);
    // Half of all goes to the first chat; the rest in falling shares.
    qint64 quedan = total / 2;
    m_charlas[0].quedan = total - quedan;
    for (size_t i = 1; i < m_charlas.size(); ++i) {
        m_charlas[i].quedan = i + 1 == m_charlas.size()
                                  ? quedan
                                  : std::max<qint64>(2, quedan * 2 / static_cast<qint64>(m_charlas.size()));
        m_charlas[i].quedan = std::min(m_charlas[i].quedan, quedan);
        quedan -= m_charlas[i].quedan;
    }
}

std::pair<qint64, QString> EscritorDeMensajes::mete(const CharlaDeMensajes &charla, const MensajeNuevo &m)
{
    const auto guid = a.uuid();
    const auto fecha = m.momento > 0 ? nanos(m.momento) : 0;
    const auto fila = m_mensaje->mete(
        guid, m.texto, m.remite, m.cuerpo.isEmpty() ? std::nullopt : std::optional(m.cuerpo), 10,
        charla.sms ? "SMS" : "iMessage", u"p:"_s + c.numeroPropio, "0D8A6E1C-52B7-4C57-9E0F-6F2E6C1B7A10", fecha,
        m.mio ? qint64{0} : fecha + 40'000'000'000, m.mio ? fecha + 1'500'000'000 : qint64{0}, m.mio, true, m.mio, true,
        m.mio, m.adjunto || m.audio, charla.sala.isEmpty() ? std::nullopt : std::optional(charla.sala), m.audio,
        m.clase, m.titulo.isEmpty() ? std::nullopt : std::optional(m.titulo),
        m.reaccionA.isEmpty() ? std::nullopt : std::optional(u"p:0/"_s + m.reaccionA), m.reaccion, c.numeroPropio,
        m.editado > 0 ? nanos(m.editado) : 0, 1);
    m_union->mete(charla.fila, fila, fecha);
    if (m.adjunto || m.audio)
        adjunta(fila, m);
    return {fila, guid};
}

void EscritorDeMensajes::adjunta(qint64 mensaje, const MensajeNuevo &m)
{
    const auto guid = u"at_0_"_s + a.uuid();
    const auto nombre = m.audio ? u"Mensaje de audio.caf"_s : u"IMG_%1.jpeg"_s.arg(4000 + m_adjuntos);
    const auto ruta = u"Library/SMS/Attachments/"_s + a.hex(2) + u'/' + a.hex(2) + u'/' + guid + u'/' + nombre;
    const auto datos = m.audio ? sonidoCaf(3.0, 440) : comoJpeg(pinta(m_adjuntos, 640, 480), 80);
    c.fechas[c.escribe(c.dominio("MediaDomain", ruta), datos)] = m.momento;
    const auto fila =
        Insercion(base, "attachment",
                  "guid, created_date, start_date, filename, uti, mime_type, transfer_state, is_outgoing, "
                  "transfer_name, total_bytes, original_guid")
            .mete(guid, (m.momento - principioApple), (m.momento - principioApple), u"~/"_s + ruta,
                  m.audio ? "com.apple.coreaudio-format" : "public.jpeg", m.audio ? "audio/x-caf" : "image/jpeg", 5,
                  m.mio, nombre, static_cast<qint64>(datos.size()), guid);
    Insercion(base, "message_attachment_join", "message_id, attachment_id").mete(mensaje, fila);
    ++m_adjuntos;
}

void EscritorDeMensajes::escribeDialogo(CharlaDeMensajes &charla, qint64 momento)
{
    const bool empresa = charla.miembros.size() == 1 && charla.sms && charla.guid.endsWith(u"CORREOS"_s);
    std::vector<Turno> turnos;
    if (empresa)
        turnos.push_back({false, avisoDeEmpresa(a)});
    else if (charla.miembros.size() > 1)
        for (qint64 i = a.entero(1, 5); i > 0; --i)
            turnos.push_back({a.si(25), fraseDeGrupo(a)});
    else
        turnos = dialogo(a);
    const int maximoDeAdjuntos = c.segun(3, 24, 60);
    QString anterior;
    for (const auto &turno : turnos) {
        if (charla.quedan == 0)
            return;
        --charla.quedan;
        MensajeNuevo m;
        m.mio = turno.mio;
        m.momento = momento;
        // The owner's own lines in a group belong to no handle.
        m.remite = charla.miembros.size() > 1 ? (turno.mio ? 0 : a.uno(charla.miembros)) : charla.miembros[0];
        if (!anterior.isEmpty() && a.si(6)) {
            m.texto =
                QLatin1String(a.si(50) ? "Le ha encantado “" : "Se ha reído de “") + turno.texto.left(12) + u"”"_s;
            m.reaccionA = anterior;
            m.reaccion = 2000 + static_cast<int>(a.entero(0, 5));
        } else if (a.si(14)) {
            m.cuerpo = turno.texto.size() % 2 == 0 ? cuerpoConAtributos(turno.texto)
                                                   : cuerpoConMencion(turno.texto, c.numeroPropio.toUtf8());
        } else {
            m.texto = turno.texto;
            m.cuerpo = a.si(60) ? cuerpoConAtributos(turno.texto) : QByteArray();
        }
        if (m.reaccion == 0 && m_adjuntos < maximoDeAdjuntos && a.si(5)) {
            m.adjunto = true;
            m.texto = a.si(50) ? std::optional(u"\uFFFC"_s) : std::nullopt;
            m.cuerpo = cuerpoConAtributos(u"\uFFFC"_s);
        }
        anterior = mete(charla, m).second;
        momento += a.entero(15, 120);
    }
}

void EscritorDeMensajes::escribeTodo()
{
    const auto total =
        std::accumulate(m_charlas.begin(), m_charlas.end(), qint64{0},
                        [](qint64 suma, const CharlaDeMensajes &charla) { return suma + charla.quedan; });
    const qint64 principio = ahoraDelTelefono - c.segun<qint64>(200, 730, 1800) * 86400;
    const qint64 fin = ahoraDelTelefono - 86400;
    qint64 quedan = total;
    while (quedan > 0) {
        // The chat is drawn by what it still has to say, so that all of them end near today.
        auto n = a.entero(1, quedan);
        size_t cual = 0;
        while (n > m_charlas[cual].quedan)
            n -= m_charlas[cual++].quedan;
        const auto antes = m_charlas[cual].quedan;
        const auto parte = static_cast<double>(total - quedan) / static_cast<double>(total);
        escribeDialogo(m_charlas[cual],
                       deDia(principio + static_cast<qint64>(parte * static_cast<double>(fin - principio))));
        quedan -= antes - m_charlas[cual].quedan;
    }
}

/// What few phones have and all phones may have: each of these rows has broken a reader somewhere.
void EscritorDeMensajes::escribeRarezas()
{
    const auto &uno = m_charlas[0];
    const auto &grupo = m_charlas[m_charlas.size() - 2];
    const auto quien = uno.miembros[0];
    auto m = [&](bool mio, qint64 hace) {
        MensajeNuevo nuevo;
        nuevo.mio = mio;
        nuevo.remite = quien;
        nuevo.momento = ahoraDelTelefono - hace;
        return nuevo;
    };
    auto vacio = m(false, 9000);
    vacio.texto = QString();
    mete(uno, vacio);
    auto sinFecha = m(false, 8000);
    sinFecha.momento = 0;
    sinFecha.texto = u"Mensaje sin fecha"_s;
    mete(uno, sinFecha);
    auto trampa = m(false, 7000);
    trampa.texto = u"Ella contestó:\n[01/01/2020 10:00] YO: y esto lo escribí yo, no tú"_s;
    mete(uno, trampa);
    auto largo = m(true, 6000);
    largo.texto = u"Te cuento todo desde el principio. "_s.repeated(400);
    largo.cuerpo = cuerpoConAtributos(*largo.texto);
    mete(uno, largo);
    auto editado = m(true, 5000);
    editado.texto = u"Quedamos a las 20:30 (corregido) <b>en punto</b> & sin falta"_s;
    editado.editado = ahoraDelTelefono - 4900;
    mete(uno, editado);
    auto audio = m(false, 4000);
    audio.audio = true;
    mete(uno, audio);
    // Deleted by the owner two days ago: the row stays, its chat lets go of it.
    auto tirado = m(true, 3500);
    tirado.texto = u"Esto mejor lo borro"_s;
    const auto fila = QByteArray::number(mete(uno, tirado).first);
    base.ejecuta(("DELETE FROM chat_message_join WHERE message_id = " + fila +
                  "; INSERT INTO chat_recoverable_message_join (chat_id, message_id, delete_date) VALUES (" +
                  QByteArray::number(uno.fila) + ", " + fila + ", " +
                  QByteArray::number(nanos(ahoraDelTelefono - 172'800)) + ")")
                     .constData());
    auto renombra = m(false, 3000);
    renombra.clase = 2;
    renombra.titulo = u"Finde en la sierra 🏔️"_s;
    mete(grupo, renombra);
}

void EscritorDeMensajes::cierra()
{
    base.empiezaDiario(true);
    MensajeNuevo ultimo;
    ultimo.remite = m_charlas[0].miembros[0];
    ultimo.momento = ahoraDelTelefono - 600;
    ultimo.texto = u"¿Has llegado ya?"_s;
    mete(m_charlas[0], ultimo);
    ultimo.mio = true;
    ultimo.momento += 120;
    ultimo.texto = u"Acabo de entrar por la puerta 🚪"_s;
    mete(m_charlas[0], ultimo);
    c.recoge(base);
    m_mensaje.reset();
    m_union.reset();
}

void ponMensajes(Contexto &c)
{
    EscritorDeMensajes escritor(c);
    // The ten rows of the oddities and the log belong to the total.
    escritor.abreCharlas(c.segun<qint64>(80, 900, 500'000) - 10);
    escritor.escribeTodo();
    escritor.escribeRarezas();
    escritor.cierra();
}

} // namespace simulado
