#include "backups/Copias.h"

#include "backups/ActivarCifrado.h"
#include "backups/Catalogo.h"
#include "backups/CopiaDeSeguridad.h"
#include "platform/Procesos.h"
#include "session/Modelo.h"

#include <QDateTime>
#include <QPointer>

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

Copias::Copias(Modelo &elModelo, HayClave preguntar, QObject *padre)
    : QObject(padre), modelo(elModelo), hayClave(std::move(preguntar))
{
    connect(&modelo, &Modelo::cambioDeSesion, this, &Copias::olvidarClaveDeOtro);
    connect(&modelo, &Modelo::cambioDeSesion, this, &Copias::cambio);
    connect(&modelo, &Modelo::refrescado, this, &Copias::cambio);
    connect(&modelo.tarea(), &Tarea::acabada, this, &Copias::cambio);
}

std::optional<QDateTime> Copias::fechaDeLaUltimaCopia() const
{
    const auto &elegido = modelo.seleccionado();
    return Catalogo::fechaDeLaUltimaCopia(modelo.carpetaCopias(), elegido ? std::optional(elegido->id) : std::nullopt);
}

std::optional<qint64> Copias::diasDesdeLaCopia() const
{
    return Catalogo::diasDesde(fechaDeLaUltimaCopia(), QDateTime::currentDateTime());
}

QString Copias::avisoTexto() const
{
    return modelo.seleccionado() ? Catalogo::aviso(diasDesdeLaCopia()).value_or(QString()) : QString();
}

QString Copias::ultimaCopia() const
{
    const auto dias = diasDesdeLaCopia();
    if (!dias)
        return u"nunca"_s;
    if (*dias < 1)
        return u"hoy"_s;
    return *dias == 1 ? u"hace 1 día"_s : u"hace %1 días"_s.arg(*dias);
}

QString Copias::pieDeHacerCopia() const
{
    const auto &elegido = modelo.seleccionado();
    const auto hay = elegido ? hayClave(elegido->id) : false;
    if (!hay)
        return {};
    return *hay ? u"Cifrada, incluye todo"_s : u"Te pediré una contraseña"_s;
}

void Copias::pedirCopia()
{
    const auto elegido = modelo.seleccionado();
    auto &tarea = modelo.tarea();
    if (!elegido)
        return;
    if (tarea.enMarcha())
        return tarea.apunta(u"Ya hay algo en marcha. Espera a que termine."_s);
    if (hayOtraCopiaEnMarcha()) {
        const QStringList lineas{u"Hay otra copia de seguridad de este iPhone haciéndose ahora mismo."_s,
                                 u"El iPhone solo puede con una a la vez: si empiezo otra, fallan las dos."_s,
                                 u"Espera a que acabe y vuelve a darle."_s};
        return tarea.rechazar(u"Copia de seguridad"_s, u"Ya hay una copia en marcha"_s, lineas);
    }
    if (!hayClave(elegido->id).value_or(true)) {
        claveDe = elegido;
        emit cambio();
        return;
    }
    empezar(elegido->id, u"La copia de seguridad de tu iPhone ha terminado."_s);
}

void Copias::empezar(const QString &udid, const QString &alAcabar)
{
    copiaDeSeguridad(modelo.tarea(), udid, modelo.carpetaCopias());
    if (modelo.tarea().enMarcha())
        emit copiaEmpezada(alAcabar);
}

bool Copias::claveVale() const
{
    return letrasDe(clave) >= minimoDeLetras && clave == claveRepetida;
}

void Copias::resolverClave(bool aceptada)
{
    const auto deQuien = std::exchange(claveDe, std::nullopt);
    const auto tomada = std::exchange(clave, {});
    claveRepetida.clear();
    emit cambioDeClave();
    emit cambio();
    if (!aceptada || !deQuien || tomada.isEmpty() || modelo.tarea().enMarcha())
        return;
    activarCifrado(modelo.tarea(), deQuien->id, tomada, [yo = QPointer(this), udid = deQuien->id](bool activado) {
        if (activado && yo)
            yo->empezar(udid, u"La copia de seguridad cifrada de tu iPhone ha terminado."_s);
    });
}

void Copias::olvidarClaveDeOtro()
{
    if (claveDe && (!modelo.seleccionado() || modelo.seleccionado()->id != claveDe->id))
        resolverClave(false);
}

void Copias::abrirCarpeta()
{
    modelo.abrirEnFinder(modelo.carpetaCopias());
}

bool Copias::hayOtraCopiaEnMarcha()
{
    return hayProcesoCon(u"idevicebackup2"_s);
}

} // namespace vellora
