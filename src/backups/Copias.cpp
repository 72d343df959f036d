#include "backups/Copias.h"

#include "backups/ActivarCifrado.h"
#include "backups/Comprobante.h"
#include "backups/CopiaDeSeguridad.h"
#include "backups/CopiasAnteriores.h"
#include "core/SegundoPlano.h"
#include "platform/Procesos.h"
#include "session/Carpetas.h"
#include "session/Modelo.h"

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
    connect(&modelo, &Modelo::refrescado, this, &Copias::quizaComprobar);
    recuperar();
}

/// What a killed program left of a backup, in the folder of any phone.
void Copias::recuperar()
{
    const auto hacer = [guardadas = CopiasAnteriores::cuantas()] {
        for (const auto &carpeta : Carpetas::deCopias())
            CopiaEnCurso::recuperar(carpeta, guardadas);
        return true;
    };
    enSegundoPlano(this, hacer, [this](bool) { emit cambio(); });
}

/// A backup that carries no note of ours, of another tool or of an older version, is looked into once.
void Copias::quizaComprobar()
{
    const auto &elegido = modelo.seleccionado();
    const auto copia = elegido ? modelo.carpetaCopias() + u'/' + elegido->id : QString();
    if (!elegido || mirando || modelo.tarea().enMarcha() || miradas.contains(copia) ||
        Catalogo::estadoDe(copia).clase != Catalogo::Clase::SinComprobar || hayOtraCopiaEnMarcha())
        return;
    mirando = true;
    miradas << copia;
    emit cambio();
    enSegundoPlano(
        this, [copia] { return Comprobante::comprobarYApuntar(copia); },
        [this, copia](const ComprobacionDeCopia &comprobacion) {
            mirando = false;
            if (comprobacion.rota())
                rotas << copia;
            emit cambio();
        });
}

Catalogo::Estado Copias::estado() const
{
    const auto &elegido = modelo.seleccionado();
    return elegido ? Catalogo::estadoDe(modelo.carpetaCopias() + u'/' + elegido->id) : Catalogo::Estado();
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

std::optional<qint64> Copias::diasDesdeLaAcabada() const
{
    const auto suyo = estado();
    const bool acabada = suyo.clase == Catalogo::Clase::Entera || suyo.clase == Catalogo::Clase::SinComprobar;
    return acabada ? Catalogo::diasDesde(suyo.fecha, QDateTime::currentDateTime()) : std::nullopt;
}

QString Copias::avisoTexto() const
{
    const auto &elegido = modelo.seleccionado();
    if (!elegido)
        return {};
    auto suyo = estado();
    if (suyo.clase == Catalogo::Clase::SinComprobar && mirando)
        return {}; // it is known in a moment
    if (suyo.clase == Catalogo::Clase::SinComprobar && rotas.contains(modelo.carpetaCopias() + u'/' + elegido->id))
        suyo.clase = Catalogo::Clase::Inacabada;
    return Catalogo::aviso(suyo, QDateTime::currentDateTime()).value_or(QString());
}

QString Copias::ultimaCopia() const
{
    if (const auto dias = diasDesdeLaCopia())
        return Catalogo::haceDias(*dias);
    const auto sinComprobar = diasDesdeLaAcabada();
    return sinComprobar ? Catalogo::haceDias(*sinComprobar) + u", sin comprobar"_s : u"nunca"_s;
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
    preguntaDeSitio_.clear();
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

void Copias::empezar(const QString &udid, const QString &alAcabar, bool aunqueFalteSitio)
{
    OpcionesDeCopia opciones;
    opciones.aunqueFalteSitio = aunqueFalteSitio;
    opciones.alFaltarSitio = [yo = QPointer(this), udid](const QString &pregunta) {
        if (!yo)
            return;
        yo->preguntaDeSitio_ = pregunta;
        yo->udidDelSitio = udid;
        emit yo->cambio();
    };
    copiaDeSeguridad(modelo.tarea(), udid, modelo.carpetaCopias(), opciones);
    if (modelo.tarea().enMarcha())
        emit copiaEmpezada(alAcabar);
}

void Copias::resolverSitio(bool aceptada)
{
    const bool pedida = !std::exchange(preguntaDeSitio_, {}).isEmpty();
    emit cambio();
    const auto &elegido = modelo.seleccionado();
    if (aceptada && pedida && elegido && elegido->id == udidDelSitio && !modelo.tarea().enMarcha() &&
        !hayOtraCopiaEnMarcha())
        empezar(elegido->id, u"La copia de seguridad de tu iPhone ha terminado."_s, true);
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
