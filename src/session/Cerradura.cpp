#include "session/Cerradura.h"

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
};

QString accionDe(Cerradura::Motivo motivo)
{
    return QString::fromLatin1(acciones.at(static_cast<size_t>(motivo)));
}

const auto noHayComo = u"Este Mac no tiene huella ni contraseña configuradas."_s;
const auto noSePudo = u"No se pudo comprobar. Inténtalo otra vez."_s;

} // namespace

Cerradura::Cerradura(QObject *padre) : QObject(padre)
{
    marcarUso();
    connect(&vigilante, &QTimer::timeout, this, &Cerradura::revisarInactividad);
    vigilante.start(segundosEntreRevisiones * 1000);
}

QString Cerradura::metodo()
{
    static const bool porHuella = ComprobacionDelDueno::hayHuella();
    return porHuella ? u"tu huella"_s : u"la contraseña del Mac"_s;
}

void Cerradura::abrir()
{
    if (comprobando_)
        return;
    comprobando_ = disponible();
    motivoFallo_.clear();
    if (!comprobando_) {
        motivoFallo_ = noHayComo;
        abierta_ = true;
        marcarUso();
    }
    emit cambio();
    if (comprobando_)
        comprobacion.comprobar(accionDe(AbrirVellora), [this](auto respuesta) { contestada(respuesta); });
}

void Cerradura::contestada(ComprobacionDelDueno::Respuesta respuesta)
{
    using Respuesta = ComprobacionDelDueno::Respuesta;
    comprobando_ = false;
    abierta_ = respuesta == Respuesta::Si;
    marcarUso();
    if (respuesta == Respuesta::No)
        motivoFallo_ = noSePudo;
    if (respuesta == Respuesta::SinPreguntar) {
        // Without a window that asks, nobody could ever get in.
        motivoFallo_ = noHayComo;
        abierta_ = true;
    }
    emit cambio();
}

void Cerradura::cerrarAhora()
{
    abierta_ = false;
    emit cambio();
}

void Cerradura::confirmar(Motivo motivo, const std::function<void(bool)> &alResponder)
{
    if (!disponible())
        return alResponder(true);
    comprobacion.comprobar(accionDe(motivo), [alResponder](ComprobacionDelDueno::Respuesta respuesta) {
        using Respuesta = ComprobacionDelDueno::Respuesta;
        alResponder(respuesta == Respuesta::Si || respuesta == Respuesta::SinPreguntar);
    });
}

void Cerradura::revisarInactividad()
{
    if (abierta_ && ultimoUso.secsTo(QDateTime::currentDateTimeUtc()) > segundosInactividad)
        cerrarAhora();
}

} // namespace vellora
