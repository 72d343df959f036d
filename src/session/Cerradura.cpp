#include "session/Cerradura.h"

#include "core/Preferencias.h"
#include "core/SegundoPlano.h"

#include <array>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr int segundosEntreRevisiones = 30;
constexpr qint64 segundosInactividad = 300;

// In the order of the enumeration; the ids of the action file.
constexpr std::array acciones{
    "es.vellora.abrir",           "es.vellora.borrar-copiadas",
    "es.vellora.devolver-copia",  "es.vellora.apagar",
    "es.vellora.reiniciar",       "es.vellora.borrar-todas-las-fotos",
    "es.vellora.borrar-del-mac",  "es.vellora.borrar-fotos",
    "es.vellora.desinstalar-una", "es.vellora.desinstalar-varias",
    "es.vellora.borrar-datos",    "es.vellora.ver-contrasenas",
    "es.vellora.hacer-copia",
};

QString accionDe(Cerradura::Motivo motivo)
{
    return QString::fromLatin1(acciones.at(static_cast<size_t>(motivo)));
}

const auto noHayComo = u"Este Mac no tiene huella ni contraseña configuradas."_s;
const auto noSePudo = u"No se pudo comprobar. Inténtalo otra vez."_s;
const auto yaNoEsta =
    u"Este ordenador comprobaba que eres tú y ahora no puede, así que Vellora sigue cerrada. Reinícialo; "
    "si quitaste esa comprobación (polkit), vuelve a instalarla."_s;
const auto claveVista = u"comprobacionVista"_s;

} // namespace

Cerradura::Cerradura(QObject *padre) : QObject(padre)
{
    marcarUso();
    connect(&vigilante, &QTimer::timeout, this, &Cerradura::revisarInactividad);
    vigilante.start(segundosEntreRevisiones * 1000);
    enSegundoPlano(
        this, [] { return ComprobacionDelDueno::hayHuella(); },
        [this](bool hay) {
            porHuella = hay;
            emit cambio();
        });
}

QString Cerradura::metodo() const
{
    return porHuella ? u"tu huella"_s : u"la contraseña del Mac"_s;
}

QString Cerradura::promesa() const
{
    if (sinComprobacion)
        return u"En este ordenador no hay nada que compruebe que eres tú: Vellora no se cierra ni pregunta."_s;
    return u"Vellora se cierra sola a los 5 minutos sin usarla, y pide %1 para volver a entrar."_s.arg(metodo());
}

QString Cerradura::promesaCorta() const
{
    return sinComprobacion ? u"Este ordenador no puede comprobar que eres tú"_s : u"Vellora pedirá "_s + metodo();
}

void Cerradura::preguntar(Motivo motivo, const std::function<void(Respuesta)> &alResponder)
{
    // What was once seen here and does not answer now is a check that failed: otherwise silencing it would open.
    ausente = false;
    const auto sinNadie = [this] {
        ausente = Preferencias::logico(claveVista);
        return ausente ? Respuesta::No : Respuesta::SinPreguntar;
    };
    comprobacion.mirar([this, motivo, alResponder, sinNadie](ComprobacionDelDueno::Hay hay) {
        using Hay = ComprobacionDelDueno::Hay;
        if (hay == Hay::SinRespuesta)
            return alResponder(Respuesta::No);
        if (hay == Hay::No)
            return alResponder(sinNadie());
        comprobacion.comprobar(accionDe(motivo), [alResponder, sinNadie](Respuesta respuesta) {
            if (respuesta == Respuesta::Si)
                Preferencias::ponLogico(claveVista, true);
            alResponder(respuesta == Respuesta::SinPreguntar ? sinNadie() : respuesta);
        });
    });
}

void Cerradura::abrir()
{
    if (comprobando_)
        return;
    comprobando_ = true;
    motivoFallo_.clear();
    emit cambio();
    preguntar(AbrirVellora, [this](Respuesta respuesta) { contestada(respuesta); });
}

void Cerradura::contestada(Respuesta respuesta)
{
    comprobando_ = false;
    sinComprobacion = respuesta == Respuesta::SinPreguntar;
    // Without anything that asks, nobody could ever get in.
    abierta_ = respuesta == Respuesta::Si || sinComprobacion;
    marcarUso();
    if (respuesta == Respuesta::No)
        motivoFallo_ = ausente ? yaNoEsta : noSePudo;
    if (sinComprobacion)
        motivoFallo_ = noHayComo;
    emit cambio();
}

void Cerradura::cerrarAhora()
{
    if (sinComprobacion)
        return;
    abierta_ = false;
    emit cambio();
}

void Cerradura::confirmar(Motivo motivo, const std::function<void(bool)> &alResponder)
{
    preguntar(motivo, [alResponder](Respuesta respuesta) {
        alResponder(respuesta == Respuesta::Si || respuesta == Respuesta::SinPreguntar);
    });
}

void Cerradura::revisarInactividad()
{
    if (abierta_ && ultimoUso.secsTo(QDateTime::currentDateTimeUtc()) > segundosInactividad)
        cerrarAhora();
}

} // namespace vellora
