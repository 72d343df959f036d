#include "Averias.h"

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace simulado
{
namespace
{

// A cut inside a file must leave the message's own head whole (an AFC header is 40 bytes, a hunk's is 5):
// a tool that reads half a head behaves differently from one that loses the cable in the middle of the data.
constexpr qint64 cabezaIntacta = 48;

bool llevaFicheros(const QString &servicio)
{
    return servicio == "com.apple.mobilebackup2"_L1 || servicio == "com.apple.afc"_L1 ||
           servicio == "com.apple.crashreportcopymobile"_L1 || servicio == "com.apple.mobile.house_arrest"_L1;
}

} // namespace

void Averias::fallar(const QString &peticion, const Fallo &fallo)
{
    const std::lock_guard cerrojo(mutex_);
    fallos_.insert(peticion, fallo);
}

void Averias::dejarDeFallar(const QString &peticion)
{
    const std::lock_guard cerrojo(mutex_);
    if (peticion.isEmpty())
        fallos_.clear();
    fallos_.remove(peticion);
}

std::optional<Fallo> Averias::tomarFallo(const QString &peticion)
{
    const std::lock_guard cerrojo(mutex_);
    const auto it = fallos_.find(peticion);
    if (it == fallos_.end())
        return {};
    const Fallo fallo = *it;
    if (it->veces > 0 && --it->veces == 0)
        fallos_.erase(it);
    return fallo;
}

void Averias::cortar(const QString &servicio, qint64 bytes, Sentido sentido)
{
    const std::lock_guard cerrojo(mutex_);
    cortes_.insert(servicio, {bytes, sentido});
}

void Averias::cortarEntreFicheros(const QString &servicio, int ficheros)
{
    const std::lock_guard cerrojo(mutex_);
    cortesEntreFicheros_.insert(servicio, ficheros);
}

bool Averias::hayCorte(const QString &servicio)
{
    const std::lock_guard cerrojo(mutex_);
    return cortes_.contains(servicio) || cortesEntreFicheros_.contains(servicio);
}

bool Averias::tocaCortarEntreFicheros(const QString &servicio, int ficherosSubidos)
{
    const std::lock_guard cerrojo(mutex_);
    const auto it = cortesEntreFicheros_.find(servicio);
    if (it == cortesEntreFicheros_.end() || ficherosSubidos < *it)
        return false;
    cortesEntreFicheros_.erase(it);
    return true;
}

void Averias::frenar(const QString &servicio, qint64 bytesPorSegundo)
{
    const std::lock_guard cerrojo(mutex_);
    if (bytesPorSegundo > 0)
        frenos_.insert(servicio, bytesPorSegundo);
    else
        frenos_.remove(servicio);
}

void Averias::pausar(const QString &servicio, int milisegundos, int veces)
{
    const std::lock_guard cerrojo(mutex_);
    if (milisegundos > 0)
        pausas_.insert(servicio, {milisegundos, veces});
    else
        pausas_.remove(servicio);
}

Averias::Permiso Averias::permitir(const QString &servicio, qint64 bytes, bool esDatos, Sentido sentido)
{
    const std::lock_guard cerrojo(mutex_);
    cuentas_[sentido == Sentido::Enviado ? u"bytesEnviados"_s : u"bytesRecibidos"_s][servicio] += bytes;
    const auto it = cortes_.find(servicio);
    if (it == cortes_.end() || it->sentido != sentido)
        return {bytes, false};
    if (it->restan >= bytes || (llevaFicheros(servicio) && (!esDatos || bytes < 2))) {
        it->restan = std::max<qint64>(0, it->restan - bytes);
        return {bytes, false};
    }
    const qint64 minimo = esDatos ? std::min(bytes - 1, cabezaIntacta) : 0;
    const qint64 pasan = std::clamp(it->restan, minimo, bytes - 1);
    cortes_.erase(it);
    return {pasan, true};
}

qint64 Averias::tasa(const QString &servicio)
{
    const std::lock_guard cerrojo(mutex_);
    const auto it = frenos_.constFind(servicio);
    return it != frenos_.cend() ? *it : frenos_.value(QString());
}

int Averias::tomarPausa(const QString &servicio)
{
    const std::lock_guard cerrojo(mutex_);
    const auto it = pausas_.find(servicio);
    if (it == pausas_.end())
        return 0;
    const int milisegundos = it->milisegundos;
    if (it->veces > 0 && --it->veces == 0)
        pausas_.erase(it);
    return milisegundos;
}

void Averias::sumar(const QString &grupo, const QString &nombre, qint64 cuanto)
{
    const std::lock_guard cerrojo(mutex_);
    cuentas_[grupo][nombre] += cuanto;
    if (traza)
        std::fprintf(stderr, "%s %s\n", qPrintable(grupo), qPrintable(nombre));
}

void Averias::contarConexion(const QString &servicio)
{
    sumar(u"conexiones"_s, servicio, 1);
}

void Averias::contarPeticion(const QString &nombre)
{
    sumar(u"peticiones"_s, nombre, 1);
}

void Averias::contarEvento(const QString &nombre)
{
    // The list is for tests to read in order; an endless session keeps only its newest part.
    constexpr qsizetype maximo = 1000;
    const std::lock_guard cerrojo(mutex_);
    if (eventos_.size() == maximo)
        eventos_.removeFirst();
    eventos_.append(nombre);
    if (traza)
        std::fprintf(stderr, "evento %s\n", qPrintable(nombre));
}

QVariantMap Averias::cuentas()
{
    const std::lock_guard cerrojo(mutex_);
    QVariantMap todas;
    for (auto grupo = cuentas_.cbegin(); grupo != cuentas_.cend(); ++grupo) {
        QVariantMap mapa;
        for (auto it = grupo->cbegin(); it != grupo->cend(); ++it)
            mapa.insert(it.key(), it.value());
        todas.insert(grupo.key(), mapa);
    }
    todas.insert(u"eventos"_s, QVariantList(eventos_.cbegin(), eventos_.cend()));
    return todas;
}

} // namespace simulado
