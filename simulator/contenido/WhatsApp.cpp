#include "contenido/Base.h"
#include "contenido/Contexto.h"
#include "contenido/Esquemas.h"
#include "contenido/Frases.h"
#include "contenido/Pintor.h"

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

constexpr auto dominioCompartido = "AppDomainGroup-group.net.whatsapp.WhatsApp.shared";

enum Tipo { Texto = 0, Imagen = 1, Video = 2, Audio = 3, Contacto = 4, Lugar = 5, AvisoDeGrupo = 6, Documento = 8 };

QString jid(const Persona &p)
{
    return p.movil().mid(1) + u"@s.whatsapp.net"_s;
}

struct Charla {
    qint64 fila = 0;
    QString jid;
    const Persona *persona = nullptr; ///< absent in a group
    std::vector<qint64> miembros;     ///< rows of ZWAGROUPMEMBER
    qint64 quedan = 0;
};

class EscritorDeWhatsApp
{
public:
    explicit EscritorDeWhatsApp(Contexto &contexto)
        : c(contexto), a(contexto.azar("whatsapp")), base(c.dominio(dominioCompartido, u"ChatStorage.sqlite"_s))
    {
        base.ejecuta(esquemaWhatsApp);
        m_mensaje.emplace(
            base, "ZWAMESSAGE",
            "Z_ENT, Z_OPT, ZDATAITEMVERSION, ZFLAGS, ZGROUPEVENTTYPE, ZISFROMME, ZMESSAGESTATUS, ZMESSAGETYPE, "
            "ZSORT, ZSTARRED, ZCHATSESSION, ZGROUPMEMBER, ZMEDIAITEM, ZMESSAGEDATE, ZSENTDATE, ZFROMJID, "
            "ZTOJID, ZPUSHNAME, ZSTANZAID, ZTEXT");
    }

    void abreCharlas(qint64 total);
    void llena(Charla &charla);
    void escribe()
    {
        for (auto &charla : m_charlas)
            llena(charla);
        cierra();
    }

private:
    void abreGrupo(const QString &nombre, size_t desde, size_t hasta);
    qint64 abre(const QString &quien, const std::optional<QString> &nombre, int clase);
    void mete(const Charla &charla, bool mio, Tipo tipo, qint64 momento, const QString &texto);
    qint64 adjunto(const Charla &charla, Tipo tipo, qint64 momento);
    void cierra();

    Contexto &c;
    Azar a;
    Base base;
    std::optional<Insercion> m_mensaje;
    std::vector<Charla> m_charlas;
    qint64 m_orden = 0;
    int m_medios = 0;
};

qint64 EscritorDeWhatsApp::abre(const QString &quien, const std::optional<QString> &nombre, int clase)
{
    return Insercion(
               base, "ZWACHATSESSION",
               "Z_ENT, Z_OPT, ZARCHIVED, ZFLAGS, ZHIDDEN, ZREMOVED, ZSESSIONTYPE, ZUNREADCOUNT, ZLASTMESSAGEDATE, "
               "ZCONTACTJID, ZPARTNERNAME")
        .mete(4, 1, a.si(10), 0, 0, 0, clase, a.entero(0, 4), apple(ahoraDelTelefono - a.entero(600, 900'000)), quien,
              nombre);
}

void EscritorDeWhatsApp::abreCharlas(qint64 total)
{
    const size_t dobles = c.segun<size_t>(5, 12, 80);
    for (size_t i = 0; i < std::min(dobles, c.gente.size()); ++i) {
        const auto &p = c.gente[i];
        if (p.telefonos.isEmpty())
            continue;
        Charla charla;
        charla.jid = jid(p);
        charla.persona = &p;
        // A chat with someone who is in no address book has no name: readers fall back to the address.
        const auto nombre = p.completo().isEmpty() ? p.empresa : p.completo();
        charla.fila = abre(charla.jid, nombre.isEmpty() ? std::nullopt : std::optional(nombre), 0);
        m_charlas.push_back(charla);
    }
    abreGrupo(u"Familia ❤️"_s, 0, 5);
    abreGrupo(u"Pádel los jueves 🎾 / suplentes"_s, 2, 8);
    abreGrupo(u"AMPA 3º B - Comisión de Fiestas, Excursiones y Otras Actividades Extraescolares del Curso 2026/2027"_s,
              3, 12);
    for (size_t i = 0; i < m_charlas.size(); ++i)
        m_charlas[i].quedan = std::max<qint64>(2, total / static_cast<qint64>(m_charlas.size()) +
                                                      (i == 0 ? total % static_cast<qint64>(m_charlas.size()) : 0));
}

void EscritorDeWhatsApp::abreGrupo(const QString &nombre, size_t desde, size_t hasta)
{
    Charla charla;
    charla.jid =
        c.gente[desde].movil().mid(1) + u'-' + QString::number(1'600'000'000 + a.entero(0, 90'000'000)) + u"@g.us"_s;
    charla.fila = abre(charla.jid, nombre, 1);
    Insercion(base, "ZWAGROUPINFO", "Z_ENT, Z_OPT, ZSTATE, ZCHATSESSION, ZCREATIONDATE, ZCREATORJID, ZOWNERJID")
        .mete(6, 1, 0, charla.fila, apple(ahoraDelTelefono - 60'000'000), jid(c.gente[desde]), jid(c.gente[desde]));
    base.ejecuta(
        "UPDATE ZWACHATSESSION SET ZGROUPINFO = (SELECT MAX(Z_PK) FROM ZWAGROUPINFO) WHERE Z_PK = (SELECT MAX(Z_PK) "
        "FROM ZWACHATSESSION)");
    Insercion miembro(base, "ZWAGROUPMEMBER",
                      "Z_ENT, Z_OPT, ZISACTIVE, ZISADMIN, ZCHATSESSION, ZCONTACTNAME, ZFIRSTNAME, ZMEMBERJID");
    for (size_t i = desde; i < hasta && i < c.gente.size(); ++i)
        if (const auto &p = c.gente[i]; !p.telefonos.isEmpty())
            charla.miembros.push_back(miembro.mete(7, 1, 1, i == desde, charla.fila, p.completo(), p.nombre, jid(p)));
    m_charlas.push_back(charla);
}

qint64 EscritorDeWhatsApp::adjunto(const Charla &charla, Tipo tipo, qint64 momento)
{
    std::optional<QString> camino;
    QByteArray datos;
    const auto carpeta = u"Media/"_s + charla.jid + u'/' + a.hex(1) + u'/' + a.hex(1) + u'/' + a.uuid().toLower();
    if (tipo == Imagen || tipo == Documento) {
        datos = tipo == Imagen
                    ? comoJpeg(pinta(500 + m_medios, 800, 600), 75)
                    : QByteArray("%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n2 0 obj<</Type/Pages/Kids[]/"
                                 "Count 0>>endobj\ntrailer<</Root 1 0 R>>\n%%EOF\n");
        camino = carpeta + (tipo == Imagen ? u".jpg"_s : u".pdf"_s);
    } else if (tipo == Audio) {
        datos = sonidoCaf(2.0, 300 + 20 * m_medios);
        camino = carpeta + u".caf"_s;
    }
    if (camino)
        c.fechas[c.escribe(c.dominio(dominioCompartido, u"Message/"_s + *camino), datos)] = momento;
    const bool lugar = tipo == Lugar;
    ++m_medios;
    return Insercion(
               base, "ZWAMEDIAITEM",
               "Z_ENT, Z_OPT, ZCLOUDSTATUS, ZFILESIZE, ZMOVIEDURATION, ZLATITUDE, ZLONGITUDE, ZMEDIALOCALPATH, ZTITLE, "
               "ZVCARDNAME, ZVCARDSTRING")
        .mete(8, 1, 4, static_cast<qint64>(datos.size()), tipo == Audio ? 2 : 0,
              lugar ? std::optional(40.4168) : std::nullopt, lugar ? std::optional(-3.7038) : std::nullopt, camino,
              tipo == Documento ? std::optional(u"Circular ñandú.pdf"_s) : std::nullopt,
              tipo == Contacto ? std::optional(c.gente[6].empresa) : std::nullopt,
              tipo == Contacto
                  ? std::optional(u"BEGIN:VCARD\nVERSION:3.0\nFN:"_s + c.gente[6].empresa + u"\nEND:VCARD"_s)
                  : std::nullopt);
}

void EscritorDeWhatsApp::mete(const Charla &charla, bool mio, Tipo tipo, qint64 momento, const QString &texto)
{
    const bool grupo = charla.persona == nullptr;
    const bool medio = tipo != Texto && tipo != AvisoDeGrupo;
    const auto item = medio ? adjunto(charla, tipo, momento) : 0;
    const auto miembro = grupo && !mio && !charla.miembros.empty() ? a.uno(charla.miembros) : 0;
    const auto fila = m_mensaje->mete(
        9, 1, 3, 0, tipo == AvisoDeGrupo ? 1 : 0, mio, mio ? 8 : 6, static_cast<int>(tipo), ++m_orden, a.si(2),
        charla.fila, FilaONada{miembro}, FilaONada{item}, apple(momento), apple(momento) - (mio ? 0 : 1),
        mio ? std::nullopt : std::optional(charla.jid), mio ? std::optional(charla.jid) : std::nullopt,
        mio || grupo ? std::nullopt : std::optional(charla.persona->nombre), a.hex(20).toUpper(),
        texto.isEmpty() ? std::nullopt : std::optional(texto));
    if (item != 0)
        base.ejecuta(
            ("UPDATE ZWAMEDIAITEM SET ZMESSAGE=" + QByteArray::number(fila) + " WHERE Z_PK=" + QByteArray::number(item))
                .constData());
}

void EscritorDeWhatsApp::llena(Charla &charla)
{
    const qint64 principio = ahoraDelTelefono - c.segun<qint64>(90, 500, 1500) * 86400;
    const qint64 paso = std::max<qint64>(30, (ahoraDelTelefono - 86400 - principio) / charla.quedan);
    const int maximoDeMedios = c.segun(4, 40, 120);
    qint64 momento = principio;
    const std::vector<Tipo> tipos{Imagen, Imagen, Imagen, Audio, Documento, Lugar, Contacto, Video};
    if (charla.persona == nullptr) {
        mete(charla, false, AvisoDeGrupo, momento, {});
        --charla.quedan;
    }
    while (charla.quedan > 0) {
        const auto turnos = charla.persona ? dialogo(a) : std::vector<Turno>{{a.si(30), fraseDeGrupo(a)}};
        qint64 hora = momento - momento % 86400 + 8 * 3600 + (momento % 86400) * 15 / 24;
        for (const auto &turno : turnos) {
            if (charla.quedan-- <= 0)
                break;
            const bool medio = m_medios < maximoDeMedios && a.si(12);
            mete(charla, turno.mio, medio ? a.uno(tipos) : Texto, hora, medio ? QString() : turno.texto);
            hora += a.entero(10, 90);
            momento += paso;
        }
    }
}

void EscritorDeWhatsApp::cierra()
{
    base.ejecuta(
        "UPDATE ZWACHATSESSION SET ZMESSAGECOUNTER = (SELECT COUNT(*) FROM ZWAMESSAGE m WHERE m.ZCHATSESSION = "
        "ZWACHATSESSION.Z_PK), ZLASTMESSAGE = (SELECT MAX(Z_PK) FROM ZWAMESSAGE m WHERE m.ZCHATSESSION = "
        "ZWACHATSESSION.Z_PK)");
    Insercion apodo(base, "ZWAPROFILEPUSHNAME", "Z_ENT, Z_OPT, ZJID, ZPUSHNAME");
    for (const auto &charla : m_charlas)
        if (charla.persona)
            apodo.mete(11, 1, charla.jid, charla.persona->nombre);
    ponCoreData(base, a.uuid(),
                {{"WAChatSession", 4, static_cast<qint64>(m_charlas.size())},
                 {"WAGroupInfo", 6, 3},
                 {"WAGroupMember", 7, 20},
                 {"WAMediaItem", 8, m_medios},
                 {"WAMessage", 9, m_orden + 1}});
    base.empiezaDiario(false);
    mete(m_charlas[0], false, Texto, ahoraDelTelefono - 300,
         u"Te mando la foto por aquí, que por el otro lado no llega 📷"_s);
    m_mensaje.reset();
    c.recoge(base);
}

} // namespace

void ponWhatsApp(Contexto &c)
{
    EscritorDeWhatsApp escritor(c);
    escritor.abreCharlas(c.segun<qint64>(50, 650, 60'000));
    escritor.escribe();
}

} // namespace simulado
