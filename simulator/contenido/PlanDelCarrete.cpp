#include "contenido/Contexto.h"

#include <QStandardPaths>

#include <array>

using namespace Qt::StringLiterals;

namespace simulado
{

namespace
{

struct Sitio {
    const char *nombre;
    double latitud, longitud;
};
constexpr std::array sitios{
    Sitio{"Madrid", 40.4168, -3.7038}, Sitio{"Valencia", 39.4699, -0.3763}, Sitio{"Cádiz", 36.5271, -6.2886},
    Sitio{"Llanes", 43.4203, -4.7552}, Sitio{"Logroño", 42.4627, -2.4450},  Sitio{"A Coruña", 43.3713, -8.3960},
    Sitio{"Girona", 41.9794, 2.8214},  Sitio{"Lisboa", 38.7223, -9.1393},   Sitio{"Auckland", -36.8485, 174.7633}};

class Plan
{
public:
    explicit Plan(Contexto &contexto, int elementos)
        : c(contexto)
        , a(contexto.azar("carrete"))
        , m_elementos(elementos)
        , m_heic(contexto.conHerramientas() && !QStandardPaths::findExecutable(u"heif-enc"_s).isEmpty())
    {
    }

    void haz();

private:
    Foto &anade(Foto::Clase clase, const QString &fichero);
    void viva();
    void retocada();
    void rafaga();
    void suelta(int i);
    /// The same picture saved twice, as when it comes back by a message.
    void repite(Foto &foto)
    {
        const auto original = c.carrete[static_cast<size_t>(m_ultimaJpeg)];
        foto.igualA = m_ultimaJpeg;
        foto.ancho = original.ancho;
        foto.alto = original.alto;
        foto.latitud = original.latitud;
        foto.longitud = original.longitud;
        foto.motivo = original.motivo;
    }
    [[nodiscard]] QString numero() const { return u"%1"_s.arg(m_numero, 4, 10, QChar(u'0')); }
    [[nodiscard]] QString fin() const { return m_heic ? u".HEIC"_s : u".JPG"_s; }
    [[nodiscard]] Foto::Clase entera() const { return m_heic ? Foto::Heic : Foto::Jpeg; }

    Contexto &c;
    Azar a;
    int m_elementos;
    bool m_heic;
    int m_numero = 0;
    int m_carpeta = 100;
    int m_motivo = 0;
    bool m_hayLargo = false;
    qint64 m_ultimaJpeg = -1;
    qint64 m_momento = 0;
    Sitio m_sitio = sitios[0];
};

Foto &Plan::anade(Foto::Clase clase, const QString &fichero)
{
    Foto f;
    f.clase = clase;
    f.carpeta = u"%1APPLE"_s.arg(m_carpeta);
    f.fichero = fichero;
    f.momento = m_momento;
    f.motivo = m_motivo;
    // The large roll's files are copies of 24 pictures: their shape goes with the picture.
    const int m = c.segun(m_motivo, m_motivo, m_motivo % 24);
    const bool deLado = m % 5 != 1 && m % 7 != 2;
    // The benchmark's pictures stay small; a few of the usual ones have the camera's full size.
    const int largo = c.segun(640, m_motivo % 17 == 5 ? 4032 : 1600, 1024);
    f.ancho = deLado ? largo : largo * 3 / 4;
    f.alto = deLado ? largo * 3 / 4 : largo;
    if (clase == Foto::Captura) {
        f.ancho = 1179;
        f.alto = 2556;
    } else if (!a.si(18)) {
        f.latitud = m_sitio.latitud + a.real(-0.02, 0.02);
        f.longitud = m_sitio.longitud + a.real(-0.02, 0.02);
        f.ciudad = QString::fromUtf8(m_sitio.nombre);
    }
    if (f.esVideo()) {
        f.ancho = clase == Foto::VivaVideo || !c.conHerramientas() ? 480 : 1280;
        if (clase == Foto::Video && !m_hayLargo && c.opciones.tamano == OpcionesContenido::Normal) {
            m_hayLargo = true;
            f.ancho = 1920;
        }
        f.alto = f.ancho * 9 / 16 / 2 * 2;
        f.duracion = clase == Foto::VivaVideo ? 1.5 : f.ancho >= 1920 ? 6.0 : a.real(1.5, 4.0);
    }
    f.favorita = a.si(9);
    f.album = a.si(30) ? static_cast<int>(a.entero(0, 2)) : -1;
    c.carrete.push_back(f);
    return c.carrete.back();
}

void Plan::viva()
{
    const auto vinculo = a.uuid();
    anade(Foto::VivaImagen, u"IMG_"_s + numero() + fin()).vinculo = vinculo;
    anade(Foto::VivaVideo, u"IMG_"_s + numero() + u".MOV"_s).vinculo = vinculo;
}

void Plan::retocada()
{
    anade(entera(), u"IMG_"_s + numero() + fin()).retocada = true;
    anade(Foto::Aae, u"IMG_"_s + numero() + u".AAE"_s);
    anade(Foto::Retoque, u"IMG_E"_s + numero() + u".JPG"_s);
}

void Plan::rafaga()
{
    const auto vinculo = a.uuid();
    for (int i = 0; i < 4; ++i) {
        auto &foto = anade(Foto::Rafaga, u"IMG_"_s + numero() + u".JPG"_s);
        foto.rafaga = vinculo;
        foto.variante = i;
        ++m_numero;
        if (i % 2)
            ++m_momento;
    }
    --m_numero;
}

void Plan::suelta(int i)
{
    switch (i % 24) {
    case 2:
    case 9:
    case 14:
    case 19:
        return viva();
    case 5:
    case 17:
        return retocada();
    case 7:
    case 21:
        anade(Foto::Captura, u"IMG_"_s + numero() + u".PNG"_s);
        return;
    case 11:
    case 12:
        anade(Foto::Video, u"IMG_"_s + numero() + (i % 48 == 12 ? u".MP4"_s : u".MOV"_s));
        return;
    case 15:
        // Bursts are rare, and the size of the large roll is counted in single files.
        return c.segun(false, true, i < 400) ? rafaga() : void(anade(entera(), u"IMG_"_s + numero() + fin()));
    default:
        auto &foto = i % 3 == 0 ? anade(Foto::Jpeg, u"IMG_"_s + numero() + u".JPG"_s)
                                : anade(entera(), u"IMG_"_s + numero() + fin());
        if (i % 24 == 6 || i % 24 == 22)
            foto.defecto = i % 24 == 6 ? 1 : 2;
        else if (i % 24 == 3)
            m_ultimaJpeg = static_cast<qint64>(c.carrete.size()) - 1;
        else if (i % 24 == 18 && c.opciones.tamano != OpcionesContenido::Grande && m_ultimaJpeg >= 0)
            repite(foto);
    }
}

void Plan::haz()
{
    const qint64 dias = c.segun<qint64>(300, 900, 2800);
    for (int i = 0; static_cast<int>(c.carrete.size()) < m_elementos; ++i) {
        ++m_numero;
        ++m_motivo;
        // A folder holds 999 numbers; the small rolls change early so that there is more than one.
        if (m_numero % 1000 == 999 || (c.carrete.size() * 100 / static_cast<size_t>(m_elementos) >= 60 &&
                                       m_carpeta == 100 && m_elementos < 1000)) {
            ++m_carpeta;
            m_numero = (m_carpeta - 100) * 1000 + 1;
        }
        if (i % 9 == 0)
            m_sitio = a.uno(sitios);
        const auto parte = static_cast<double>(c.carrete.size()) / m_elementos;
        m_momento = ahoraDelTelefono - static_cast<qint64>((1.0 - parte) * static_cast<double>(dias) * 86400) - 7200;
        m_momento = m_momento - m_momento % 86400 + 8 * 3600 + (m_momento % 86400) / 2 +
                    a.entero(0, c.segun<qint64>(7000, 7000, 2));
        suelta(i);
    }
}

} // namespace

void planeaCarrete(Contexto &c)
{
    Plan plan(c, c.segun(14, 120, 60'000));
    plan.haz();
    // One of each kind that the phone keeps but does not show, always at the same places of the roll.
    int elemento = 0;
    for (auto &foto : c.carrete) {
        if (!foto.esElemento())
            continue;
        ++elemento;
        foto.oculta = elemento == 4 || elemento == 40;
        foto.borrada = elemento == 7 || elemento == 41 || elemento == 42;
    }
}

} // namespace simulado
