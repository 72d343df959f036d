#include "backups/CopiasAutomaticas.h"

#include "backups/Automatico.h"
#include "backups/CopiaDeSeguridad.h"
#include "backups/Copias.h"
#include "core/Preferencias.h"
#include "core/SegundoPlano.h"
#include "session/Modelo.h"

#include <QDateTime>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto claveCopiaAuto = u"copiaAutomaticaAlEnchufar"_s;
constexpr qint64 segundosEntreIntentos = 86400;

/// Name of the setting that keeps when a phone's backup was last begun without being asked for.
QString claveDelIntento(const QString &udid)
{
    return u"ultimaCopiaAlEnchufar-"_s + udid;
}

bool intentadaHoy(const QString &udid)
{
    const auto intento = QDateTime::fromString(Preferencias::texto(claveDelIntento(udid)), Qt::ISODate);
    const auto pasados = intento.secsTo(QDateTime::currentDateTimeUtc());
    return intento.isValid() && pasados >= 0 && pasados < segundosEntreIntentos;
}

} // namespace

CopiasAutomaticas::CopiasAutomaticas(Modelo &elModelo, Copias &lasCopias, QObject *padre)
    : QObject(padre), modelo(elModelo), copias(lasCopias), semanal_(Automatico::activa())
{
    connect(&copias, &Copias::cambio, this, &CopiasAutomaticas::cambio);
    // Its own, or one that the owner made: a good end takes the word back.
    connect(&modelo.tarea(), &Tarea::acabada, this, [this] {
        if (copias.diasDesdeLaAcabada().value_or(1) < 1)
            avisoAlEnchufar_.clear();
        emit cambio();
    });
}

QString CopiasAutomaticas::edad() const
{
    const auto comprobada = copias.diasDesdeLaCopia();
    const auto dias = comprobada ? comprobada : copias.diasDesdeLaAcabada();
    if (!dias)
        return {};
    return (*dias < 1 ? u"Última copia: hoy"_s : u"Última copia: hace %1 días"_s.arg(*dias)) +
           (comprobada ? QString() : u", sin comprobar"_s);
}

void CopiasAutomaticas::mirarSemanal()
{
    enSegundoPlano(this, &Automatico::ultimoResultado, [this](const QString &resultado) {
        ultimaSemanal_ = resultado;
        emit cambio();
    });
}

void CopiasAutomaticas::ponSemanal(bool encendida)
{
    const auto &elegido = modelo.seleccionado();
    if (ocupada_ || encendida == semanal_ || (encendida && !elegido))
        return;
    const auto encargar = [encendida, udid = elegido ? elegido->id : QString(), carpeta = modelo.carpetaCopias()] {
        if (encendida)
            return Automatico::activar(udid, carpeta);
        Automatico::desactivar();
        return std::optional<QString>();
    };
    ocupada_ = true;
    semanal_ = encendida;
    aviso_.clear();
    emit cambio();
    enSegundoPlano(this, encargar, [this, encendida](const std::optional<QString> &fallo) {
        ocupada_ = false;
        semanal_ = encendida && !fallo;
        if (fallo) {
            aviso_ = *fallo;
        } else if (encendida) {
            aviso_ = u"Listo. Cada semana se hará sola, siempre que el iPhone esté conectado y desbloqueado."_s;
        }
        emit cambio();
    });
}

bool CopiasAutomaticas::alEnchufar() const
{
    return Preferencias::logico(claveCopiaAuto);
}

void CopiasAutomaticas::ponAlEnchufar(bool encendida)
{
    Preferencias::ponLogico(claveCopiaAuto, encendida);
    emit cambio();
}

void CopiasAutomaticas::trasRefrescar(const std::optional<QString> &antes)
{
    const auto elegido = modelo.seleccionado();
    if (elegido && elegido->id != antes)
        quizaCopiaAutomatica(*elegido);
    QSet<QString> conectados;
    for (const auto &uno : modelo.dispositivos())
        conectados << uno.id;
    yaAutoCopiados &= conectados;
}

void CopiasAutomaticas::quizaCopiaAutomatica(const Dispositivo &iphone)
{
    if (!alEnchufar() || !modelo.esConocido(iphone.id) || modelo.tarea().enMarcha() ||
        yaAutoCopiados.contains(iphone.id))
        return;
    const auto dias = copias.diasDesdeLaAcabada();
    if (dias && *dias < 1) {
        yaAutoCopiados << iphone.id;
        return;
    }
    if (intentadaHoy(iphone.id)) {
        // Each time that it is plugged in would be an hour of work that comes to nothing again.
        yaAutoCopiados << iphone.id;
        avisoAlEnchufar_ =
            u"La última copia automática no se completó. No la repito sola hasta que pase un día; puedes "
            "hacerla tú cuando quieras."_s;
        emit cambio();
        return;
    }
    if (Copias::hayOtraCopiaEnMarcha())
        return; // both would fail
    yaAutoCopiados << iphone.id;
    avisoAlEnchufar_.clear();
    Preferencias::ponTexto(claveDelIntento(iphone.id), QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    OpcionesDeCopia opciones;
    opciones.sinCifrar = Copias::admiteSinCifrar(iphone.id);
    opciones.alNoIrCifrada = [suyas = QPointer(&copias), udid = iphone.id] {
        if (suyas)
            suyas->preguntarSinCifrar(udid);
    };
    copiaDeSeguridad(modelo.tarea(), iphone.id, modelo.carpetaCopias(), opciones);
}

} // namespace vellora
