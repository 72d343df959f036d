#include "backups/CopiasAutomaticas.h"

#include "backups/Automatico.h"
#include "backups/CopiaDeSeguridad.h"
#include "backups/Copias.h"
#include "core/Preferencias.h"
#include "core/SegundoPlano.h"
#include "session/Modelo.h"

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto claveCopiaAuto = u"copiaAutomaticaAlEnchufar"_s;

}

CopiasAutomaticas::CopiasAutomaticas(Modelo &elModelo, Copias &lasCopias, QObject *padre)
    : QObject(padre), modelo(elModelo), copias(lasCopias), semanal_(Automatico::activa())
{
    connect(&copias, &Copias::cambio, this, &CopiasAutomaticas::cambio);
}

QString CopiasAutomaticas::edad() const
{
    const auto dias = copias.diasDesdeLaCopia();
    if (!dias)
        return {};
    return *dias < 1 ? u"Última copia: hoy"_s : u"Última copia: hace %1 días"_s.arg(*dias);
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
    const auto dias = copias.diasDesdeLaCopia();
    yaAutoCopiados << iphone.id;
    if (!dias || *dias >= 1)
        copiaDeSeguridad(modelo.tarea(), iphone.id, modelo.carpetaCopias() + u'/' + iphone.id);
}

} // namespace vellora
