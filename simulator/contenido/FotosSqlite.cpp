#include "contenido/Base.h"
#include "contenido/Contexto.h"
#include "contenido/Esquemas.h"
#include "contenido/Pintor.h"

#include <QDateTime>

#include <array>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

constexpr int entAsset = 3, entAtributos = 1, entExtendidos = 24, entAlbum = 28;
/// Kinds of a burst's pictures: the first one is the phone's own pick.
constexpr int elegidaPorElTelefono = 16, noElegida = 2;

const char *tipoUniforme(const Foto &f)
{
    if (f.clase == Foto::Captura)
        return "public.png";
    if (f.esVideo())
        return f.fichero.endsWith(u".MP4"_s) ? "public.mpeg-4" : "com.apple.quicktime-movie";
    return f.fichero.endsWith(u".HEIC"_s) ? "public.heic" : "public.jpeg";
}

class EscritorDeFotos
{
public:
    explicit EscritorDeFotos(Contexto &contexto)
        : c(contexto), a(contexto.azar("fotos")), base(c.media(u"PhotoData/Photos.sqlite"_s))
    {
        base.ejecuta(esquemaFotos);
        base.ejecuta(esquemaFotosAlbumes);
        m_asset.emplace(base, "ZASSET",
                        "Z_PK, Z_ENT, Z_OPT, ZADJUSTMENTSSTATE, ZAVALANCHEKIND, ZAVALANCHEPICKTYPE, ZBUNDLESCOPE, "
                        "ZCLOUDLOCALSTATE, ZCOMPLETE, ZFAVORITE, "
                        "ZHASADJUSTMENTS, ZHEIGHT, ZHIDDEN, ZKIND, ZKINDSUBTYPE, ZORIENTATION, ZPLAYBACKSTYLE, "
                        "ZSAVEDASSETTYPE, ZTRASHEDSTATE, "
                        "ZVISIBILITYSTATE, ZWIDTH, ZADDITIONALATTRIBUTES, ZEXTENDEDATTRIBUTES, ZMOMENT, ZADDEDDATE, "
                        "ZDATECREATED, ZDURATION, ZLATITUDE, "
                        "ZLONGITUDE, ZMODIFICATIONDATE, ZTRASHEDDATE, ZAVALANCHEUUID, ZDIRECTORY, ZFILENAME, "
                        "ZMEDIAGROUPUUID, ZUNIFORMTYPEIDENTIFIER, ZUUID");
        m_atributos.emplace(
            base, "ZADDITIONALASSETATTRIBUTES",
            "Z_PK, Z_ENT, Z_OPT, ZEXIFTIMESTAMPSTRING, ZORIGINALFILESIZE, ZORIGINALHEIGHT, ZORIGINALWIDTH, "
            "ZORIGINALORIENTATION, "
            "ZTIMEZONEOFFSET, ZVIEWCOUNT, ZASSET, ZCREATORBUNDLEID, ZEDITORBUNDLEID, ZORIGINALFILENAME, ZTIMEZONENAME");
        m_extendidos.emplace(base, "ZEXTENDEDATTRIBUTES",
                             "Z_PK, Z_ENT, Z_OPT, ZISO, ZASSET, ZAPERTURE, ZDURATION, ZFOCALLENGTH, ZLATITUDE, "
                             "ZLONGITUDE, ZDATECREATED, ZCAMERAMAKE, "
                             "ZCAMERAMODEL, ZLENSMODEL");
        m_enAlbum.emplace(base, "Z_28ASSETS", "Z_28ALBUMS, Z_3ASSETS, Z_FOK_3ASSETS");
    }

    void albumes();
    void mete(const Foto &f);
    void termina();

private:
    Contexto &c;
    Azar a;
    Base base;
    std::optional<Insercion> m_asset, m_atributos, m_extendidos, m_enAlbum;
    qint64 m_filas = 0;
    qint64 m_momentos = 0;
    qint64 m_dia = 0;
    QString m_rafaga;
};

void EscritorDeFotos::albumes()
{
    Insercion album(base, "ZGENERICALBUM",
                    "Z_ENT, Z_OPT, ZKIND, ZTRASHEDSTATE, ZCREATIONDATE, ZTITLE, ZUUID, ZCLOUDLOCALSTATE");
    // Kind 2 is an album of the user's; the others are the phone's own roots.
    for (const auto &[nombre, clase] :
         {std::pair{"Verano en la playa 🏖️", 2}, {"Casa nueva / reformas", 2}, {"Niños", 2}})
        album.mete(entAlbum, 1, clase, 0, apple(ahoraDelTelefono - 30'000'000), nombre, a.uuid(), 0);
    album.mete(entAlbum, 1, 3999, 0, nullptr, nullptr, a.uuid(), 0);
    album.mete(entAlbum, 1, 3571, 0, nullptr, "progress-sync", a.uuid(), 0);
}

void EscritorDeFotos::mete(const Foto &f)
{
    const auto fila = ++m_filas;
    const auto fecha = apple(f.momento);
    if (f.momento / 86400 != m_dia) {
        m_dia = f.momento / 86400;
        ++m_momentos;
        Insercion(base, "ZMOMENT",
                  "Z_PK, Z_ENT, Z_OPT, ZTRASHEDSTATE, ZAPPROXIMATELATITUDE, ZAPPROXIMATELONGITUDE, ZSTARTDATE, "
                  "ZREPRESENTATIVEDATE, ZTITLE, ZUUID")
            .mete(m_momentos, 44, 1, 0, f.latitud, f.longitud, fecha, fecha,
                  f.ciudad.isEmpty() ? std::nullopt : std::optional(f.ciudad), a.uuid());
    }
    const bool enRafaga = !f.rafaga.isEmpty(), primera = enRafaga && f.rafaga != m_rafaga,
               viva = f.clase == Foto::VivaImagen;
    m_rafaga = f.rafaga;
    const auto sitio = [](const std::optional<double> &grado) {
        return grado.value_or(-180.0);
    };
    m_asset->mete(fila, entAsset, 4, f.retocada ? 1 : 0, enRafaga ? 1 : 0,
                  !enRafaga ? 0
                  : primera ? elegidaPorElTelefono
                            : noElegida,
                  0, 1, 1, f.favorita, f.retocada, f.alto, f.oculta, f.esVideo(),
                  viva                       ? 2
                  : f.clase == Foto::Captura ? 10
                                             : 0,
                  1,
                  f.esVideo() ? 4
                  : viva      ? 3
                              : 1,
                  3, f.borrada, enRafaga && !primera ? 2 : 0, f.ancho, fila, fila, m_momentos, fecha + 1, fecha,
                  f.clase == Foto::Video ? f.duracion : 0.0, sitio(f.latitud), sitio(f.longitud), fecha + 60,
                  f.borrada ? std::optional(apple(ahoraDelTelefono - 864'000)) : std::nullopt,
                  enRafaga ? std::optional(f.rafaga) : std::nullopt, u"DCIM/"_s + f.carpeta, f.fichero,
                  f.vinculo.isEmpty() ? std::nullopt : std::optional(f.vinculo), tipoUniforme(f), a.uuid());
    m_atributos->mete(
        fila, entAtributos, 2,
        QDateTime::fromSecsSinceEpoch(f.momento, Qt::OffsetFromUTC, 3600).toString(u"yyyy:MM:dd HH:mm:ss"_s), f.bytes,
        f.alto, f.ancho, 1, 3600, a.entero(0, 12), fila,
        f.clase == Foto::Captura ? "com.apple.springboard" : "com.apple.camera",
        f.retocada ? std::optional(u"com.apple.mobileslideshow"_s) : std::nullopt, f.fichero, "GMT+0100");
    m_extendidos->mete(fila, entExtendidos, 1, 50 + f.motivo * 53 % 800, fila, 1.78, f.duracion, 6.86, f.latitud,
                       f.longitud, fecha, f.clase == Foto::Captura ? std::nullopt : std::optional(u"Apple"_s),
                       f.clase == Foto::Captura ? std::nullopt : std::optional(u"iPhone 14 Pro"_s), nullptr);
    if (f.album >= 0)
        m_enAlbum->mete(f.album + 1, fila, fila * 1024);
}

void EscritorDeFotos::termina()
{
    base.ejecuta("UPDATE ZGENERICALBUM SET ZCACHEDCOUNT = (SELECT COUNT(*) FROM Z_28ASSETS WHERE Z_28ALBUMS = "
                 "ZGENERICALBUM.Z_PK)");
    ponCoreData(base, a.uuid(),
                {{"AdditionalAssetAttributes", entAtributos, m_filas},
                 {"Asset", entAsset, m_filas},
                 {"ExtendedAttributes", entExtendidos, m_filas},
                 {"GenericAlbum", entAlbum, 5},
                 {"Moment", 44, m_momentos}});
    base.empiezaDiario(true);
    base.ejecuta("UPDATE ZASSET SET ZFAVORITE = 1, Z_OPT = 5 WHERE Z_PK = 1");
    c.recoge(base);
}

} // namespace

void ponFotosSqlite(Contexto &c)
{
    {
        EscritorDeFotos escritor(c);
        escritor.albumes();
        for (const auto &foto : c.carrete)
            if (foto.esElemento())
                escritor.mete(foto);
        escritor.termina();
    }
    c.escribe(c.media(u"PhotoData/protection"_s), {});
    c.escribe(c.media(u"PhotoData/Thumbnails/V2/DCIM/100APPLE/%1/5003.JPG"_s.arg(
                  c.carrete.empty() ? u"IMG_0001.JPG"_s : c.carrete.front().fichero)),
              comoJpeg(pinta(1, 240, 180), 70));
}

} // namespace simulado
