#include "contenido/Base.h"
#include "contenido/Contexto.h"
#include "contenido/Esquemas.h"

#include <array>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

constexpr int entCuenta = 14, entCarpeta = 15, entNota = 12, entDatos = 19;

/// gzip (RFC 1952) without a date, around the deflate stream that qCompress makes (4 bytes of length, then zlib).
QByteArray comoGzip(const QByteArray &datos)
{
    quint32 crc = 0xffffffffU;
    for (const char c : datos) {
        crc ^= static_cast<quint8>(c);
        for (int i = 0; i < 8; ++i)
            crc = (crc >> 1) ^ ((crc & 1) ? 0xedb88320U : 0);
    }
    crc = ~crc;
    const auto zlib = qCompress(datos, 6);
    QByteArray salida = QByteArray::fromHex("1f8b0800000000000013") + zlib.mid(6, zlib.size() - 10);
    for (const quint32 n : {crc, static_cast<quint32>(datos.size())})
        for (int i = 0; i < 4; ++i)
            salida += static_cast<char>((n >> (8 * i)) & 0xff);
    return salida;
}

QByteArray varint(quint64 n)
{
    QByteArray salida;
    for (; n > 0x7f; n >>= 7)
        salida += static_cast<char>((n & 0x7f) | 0x80);
    return salida + static_cast<char>(n);
}
QByteArray campo(int numero, quint64 n)
{
    return varint(static_cast<quint64>(numero) << 3) + varint(n);
}
QByteArray campo(int numero, const QByteArray &datos)
{
    return varint(static_cast<quint64>(numero) << 3 | 2) + varint(static_cast<quint64>(datos.size())) + datos;
}

/// A note's body as the phone keeps it: document (2) > note (3) > its text (2) and one run of style (5) a paragraph,
/// whose lengths count UTF-16 units. The first paragraph is the title (style 0).
QByteArray cuerpoDeNota(const QString &texto)
{
    QByteArray nota = campo(2, texto.toUtf8());
    const auto parrafos = texto.split(u'\n');
    for (qsizetype i = 0; i < parrafos.size(); ++i) {
        const auto largo = static_cast<quint64>(parrafos[i].size()) + (i + 1 < parrafos.size() ? 1 : 0);
        const auto estilo = i == 0                            ? campo(1, quint64{0})
                            : parrafos[i].startsWith(u"- "_s) ? campo(1, quint64{101})
                                                              : campo(3, quint64{4});
        if (largo > 0)
            nota += campo(5, campo(1, largo) + campo(2, estilo));
    }
    return comoGzip(campo(2, campo(1, quint64{0}) + campo(2, quint64{0}) + campo(3, nota)));
}

const std::array textos{
    u"Lista de la compra\n- Leche sin lactosa\n- Pan de centeno\n- Tomates de los buenos\n- Café (¡descafeinado no!)"_s,
    u"Ideas para el cumple de Lucía 🎂\nReservar mesa para 12 en el sitio de la plaza.\nRegalo: la guitarra o el curso de cerámica."_s,
    u"Wifi de casa de mis padres\nRed: LaCueva_5G\nClave: preguntar a papá"_s,
    u"Receta de croquetas de la yaya\n1 litro de leche entera; 100 g de harina; 100 g de mantequilla.\nSofreír "
    u"despacio, sin prisa.\n"
    "Dejar reposar toda la noche."_s,
    u"Reunión del AMPA\nAsisten: Íñigo, Fátima, Begoña.\nAcuerdos:\n- Fiesta el 19 de diciembre\n- Presupuesto: 350 €"_s,
    u"Libros pendientes\n- La plaza del Diamante\n- Nada\n- Los santos inocentes\n- Entre visillos"_s,
    u"Tallas de los niños\nZapato 31; pantalón 8 años; chaqueta 10."_s,
    u"Viaje a Asturias 🏔️🌧️\nDía 1: Llanes y Gulpiyuri.\nDía 2: ruta del Cares (salir antes de las 9).\nDía 3: Cudillero."_s,
    u"Frases de la peque\n«Mamá, el sol se ha ido a dormir sin lavarse los dientes.»"_s,
    u"Medidas del salón\nPared larga 4,35 m; hueco del mueble 1,20 × 0,45 m; techo 2,61 m"_s};

} // namespace

void ponNotas(Contexto &c)
{
    auto a = c.azar("notas");
    Base base(c.dominio("AppDomainGroup-group.com.apple.notes", u"NoteStore.sqlite"_s));
    base.ejecuta(esquemaNotas);
    const auto cuenta = Insercion(base, "ZICCLOUDSYNCINGOBJECT", "Z_ENT, Z_OPT, ZACCOUNTTYPE, ZIDENTIFIER, ZNAME")
                            .mete(entCuenta, 1, 1, a.uuid(), "iCloud");
    std::vector<qint64> carpetas;
    Insercion carpeta(base, "ZICCLOUDSYNCINGOBJECT", "Z_ENT, Z_OPT, ZACCOUNT4, ZFOLDERTYPE, ZIDENTIFIER, ZTITLE2");
    for (const auto &[nombre, tipo] : {std::pair{"Notas", 0}, {"Cocina", 0}, {"Eliminadas recientemente", 1}})
        carpetas.push_back(carpeta.mete(entCarpeta, 1, cuenta, tipo, a.uuid(), nombre));
    Insercion nota(
        base, "ZICCLOUDSYNCINGOBJECT",
        "Z_ENT, Z_OPT, ZACCOUNT7, ZFOLDER, ZIDENTIFIER, ZTITLE1, ZSNIPPET, ZCREATIONDATE3, ZMODIFICATIONDATE1, "
        "ZISPASSWORDPROTECTED, ZMARKEDFORDELETION, ZISPINNED, ZNOTEDATA");
    Insercion datos(base, "ZICNOTEDATA", "Z_PK, Z_ENT, Z_OPT, ZNOTE, ZDATA");
    qint64 numero = 0;
    auto mete = [&](const QString &texto, qint64 momento, bool cerrada, bool tirada = false) {
        const auto titulo = texto.section(u'\n', 0, 0);
        const auto resumen = cerrada ? QString() : texto.section(u'\n', 1, 1);
        const auto fila = nota.mete(entNota, 2, cuenta,
                                    carpetas[static_cast<size_t>(tirada            ? 2
                                                                 : numero % 7 == 3 ? 1
                                                                                   : 0)],
                                    a.uuid(), titulo, resumen.isEmpty() ? std::nullopt : std::optional(resumen),
                                    apple(momento - 86400), apple(momento), cerrada, tirada, numero == 0, numero + 1);
        ++numero;
        // A locked note's body is cipher text: no reader may take it for gzip.
        datos.mete(numero, entDatos, 1, fila, cerrada ? a.bytes(180) : cuerpoDeNota(texto));
    };
    const size_t cuantas = c.segun<size_t>(6, 32, 400);
    for (size_t i = 0; i < cuantas; ++i) {
        const auto vuelta = i / textos.size();
        auto texto = textos[i % textos.size()];
        if (vuelta > 0)
            texto.replace(texto.indexOf(u'\n'), 1, u" (%1)\n"_s.arg(vuelta + 1));
        mete(texto, ahoraDelTelefono - static_cast<qint64>(cuantas - i) * 500'000 - a.entero(0, 90'000), false);
    }
    mete(u"Claves del banco"_s, ahoraDelTelefono - 700'000, true);
    mete(u"Un título larguísimo que sigue y sigue "_s.repeated(8) + u"\nY poco dentro."_s, ahoraDelTelefono - 600'000,
         false);
    mete(u"Discurso que no di\nQueridos todos:"_s, ahoraDelTelefono - 500'000, false, true);
    ponCoreData(base, a.uuid(),
                {{"ICCloudSyncingObject", 3, numero + 6},
                 {"ICNote", entNota, 0},
                 {"ICAccount", entCuenta, 0},
                 {"ICFolder", entCarpeta, 0},
                 {"ICNoteData", entDatos, numero + 2}});
    base.empiezaDiario(true);
    mete(u"Recoger el paquete\nEstanco de la esquina, antes del sábado 📦"_s, ahoraDelTelefono - 3600, false);
    c.recoge(base);
}

} // namespace simulado
