#include "backups/Copias.h"

#include "backups/ActivarCifrado.h"
#include "backups/Comprobante.h"
#include "backups/CopiaDeSeguridad.h"
#include "backups/CopiasAnteriores.h"
#include "core/Preferencias.h"
#include "core/SegundoPlano.h"
#include "platform/Procesos.h"
#include "session/Carpetas.h"
#include "session/Modelo.h"

#include <QPointer>

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto claveSinCifrar = u"copiasSinCifrar"_s;

}

Copias::Copias(Modelo &elModelo, Consulta suConsulta, QObject *padre)
    : QObject(padre), modelo(elModelo), consulta(std::move(suConsulta))
{
    connect(&modelo, &Modelo::cambioDeSesion, this, &Copias::mirarElLlavero);
    connect(&modelo.tarea(), &Tarea::acabada, this, [this] {
        consultado.clear();
        mirarElLlavero();
    });
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
    const auto cual = elegido ? std::optional(elegido->id) : Catalogo::udidDeLaCopia(modelo.carpetaCopias());
    return cual ? Catalogo::estadoDe(modelo.carpetaCopias() + u'/' + *cual) : Catalogo::Estado();
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
    if (!elegido || consultado != elegido->id || !enElLlavero)
        return {};
    if (*enElLlavero == Llavero::Estado::Hallada)
        return u"Cifrada, incluye todo"_s;
    return *enElLlavero == Llavero::Estado::SinClave ? u"Te pediré una contraseña"_s : QString();
}

/// For the words under the button. The store may take its time, and the window is not to wait for it.
void Copias::mirarElLlavero()
{
    const auto &elegido = modelo.seleccionado();
    if (!elegido || !consulta || consultado == elegido->id)
        return;
    consultado = elegido->id;
    enElLlavero.reset();
    enSegundoPlano(
        this, [suya = consulta, udid = elegido->id] { return suya(udid); },
        [this, udid = elegido->id](Llavero::Estado dicho) {
            if (consultado != udid)
                return;
            enElLlavero = dicho;
            emit cambio();
        });
}

bool Copias::puedeEmpezar()
{
    auto &tarea = modelo.tarea();
    if (tarea.enMarcha()) {
        tarea.apunta(u"Ya hay algo en marcha. Espera a que termine."_s);
        return false;
    }
    if (!hayOtraCopiaEnMarcha())
        return true;
    const QStringList lineas{u"Hay otra copia de seguridad de este iPhone haciéndose ahora mismo."_s,
                             u"El iPhone solo puede con una a la vez: si empiezo otra, fallan las dos."_s,
                             u"Espera a que acabe y vuelve a darle."_s};
    tarea.rechazar(u"Copia de seguridad"_s, u"Ya hay una copia en marcha"_s, lineas);
    return false;
}

void Copias::pedirCopia()
{
    const auto elegido = modelo.seleccionado();
    if (!elegido || consultando || !puedeEmpezar())
        return;
    consultando = true;
    enSegundoPlano(
        this, [suya = consulta, udid = elegido->id] { return suya(udid); },
        [this, telefono = *elegido](Llavero::Estado dicho) {
            consultando = false;
            decidir(telefono, dicho);
        });
}

void Copias::decidir(const Dispositivo &telefono, Llavero::Estado dicho)
{
    const auto &elegido = modelo.seleccionado();
    if (!elegido || elegido->id != telefono.id || !puedeEmpezar())
        return;
    if (dicho == Llavero::Estado::SinClave && !admiteSinCifrar(telefono.id)) {
        guardarSecretos();
        claveDe = telefono;
        emit cambio();
        return;
    }
    empezar(telefono.id, u"La copia de seguridad de tu iPhone ha terminado."_s, false);
    if (dicho != Llavero::Estado::Hallada)
        modelo.tarea().apunta(Llavero::porQue(dicho));
}

void Copias::hacerCopia(bool sinCifrar)
{
    const auto elegido = modelo.seleccionado();
    if (elegido && puedeEmpezar())
        empezar(elegido->id, u"La copia de seguridad de tu iPhone ha terminado."_s, sinCifrar);
}

void Copias::empezar(const QString &udid, const QString &alAcabar, bool sinCifrar, bool aunqueFalteSitio)
{
    OpcionesDeCopia opciones;
    opciones.sinCifrar = sinCifrar || admiteSinCifrar(udid);
    opciones.alNoIrCifrada = [yo = QPointer(this), udid] {
        if (yo)
            yo->preguntarSinCifrar(udid);
    };
    opciones.aunqueFalteSitio = aunqueFalteSitio;
    opciones.alFaltarSitio = [yo = QPointer(this), udid](const QString &pregunta) {
        if (yo)
            yo->preguntarPorElSitio(udid, pregunta);
    };
    copiaDeSeguridad(modelo.tarea(), udid, modelo.carpetaCopias(), opciones);
    if (modelo.tarea().enMarcha())
        emit copiaEmpezada(alAcabar);
}

void Copias::preguntarPorElSitio(const QString &udid, const QString &texto)
{
    emit preguntar({u"¿Hacer la copia aunque quizá no quepa?"_s, texto, u"Hacerla de todos modos"_s, u"No hacerla"_s,
                    Cerradura::HacerCopia, udid, nullptr, [yo = QPointer(this), udid] {
                        if (yo && yo->puedeEmpezar())
                            yo->empezar(udid, u"La copia de seguridad de tu iPhone ha terminado."_s, false, true);
                    }});
}

bool Copias::admiteSinCifrar(const QString &udid)
{
    return Preferencias::lista(claveSinCifrar).contains(udid);
}

void Copias::ponSinCifrar(const QString &udid)
{
    if (!admiteSinCifrar(udid))
        Preferencias::ponLista(claveSinCifrar, Preferencias::lista(claveSinCifrar) << udid);
}

void Copias::preguntarSinCifrar(const QString &udid)
{
    const auto texto = u"El iPhone no tiene puesto el cifrado de las copias. Una copia sin cifrar la puede leer "
                       "cualquiera que llegue al disco, y no lleva tus contraseñas, los datos de Salud ni parte de "
                       "WhatsApp. Si aceptas, las copias de este iPhone se harán así hasta que lo cifres."_s;
    emit preguntar({u"¿Hacer la copia sin cifrar?"_s, texto, u"Hacerla sin cifrar"_s, u"No hacerla"_s,
                    Cerradura::HacerCopia, udid, nullptr, [yo = QPointer(this), udid] {
                        if (!yo)
                            return;
                        ponSinCifrar(udid);
                        yo->hacerCopia(true);
                    }});
}

/// The owner typed it, twice, and it stands nowhere else: nothing else runs before it has been seen once more. It is
/// not taken away with the phone, which asks for it from now on.
void Copias::ensenarClave(const QString &udid, const QString &perdida)
{
    const auto texto = u"No he podido guardarla en el Llavero, y sin ella no se podrá abrir ninguna copia de este "
                       "iPhone. Apúntala ahora en sitio seguro:\n\n%1"_s.arg(perdida);
    emit preguntar({u"Apunta esta contraseña"_s, texto, u"Ya la he apuntado: hacer la copia"_s, u"No hacer la copia"_s,
                    Cerradura::HacerCopia, QString(), nullptr, [yo = QPointer(this), udid] {
                        const auto elegido = yo ? yo->modelo.seleccionado() : std::nullopt;
                        if (elegido && elegido->id == udid)
                            yo->hacerCopia(false);
                    }});
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
    const auto cifrado = [yo = QPointer(this), udid = deQuien->id, tomada](Cifrado como) {
        if (yo && como == Cifrado::Puesto)
            yo->empezar(udid, u"La copia de seguridad cifrada de tu iPhone ha terminado."_s, false);
        if (yo && como == Cifrado::SinGuardar)
            yo->ensenarClave(udid, tomada);
    };
    activarCifrado(modelo.tarea(), deQuien->id, tomada, cifrado);
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
