#include "session/Consentimiento.h"

#include "session/Modelo.h"

#include <QPointer>

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

Consentimiento::Consentimiento(Modelo &elModelo, Cerradura &laCerradura, QObject *padre)
    : QObject(padre), modelo(elModelo), cerradura(laCerradura)
{
    connect(&modelo, &Modelo::cambioDeSesion, this, &Consentimiento::cerrarLasDeOtro);
}

bool Consentimiento::esDelElegido(const Pregunta &pregunta) const
{
    return pregunta.udid.isEmpty() || (modelo.seleccionado() && modelo.seleccionado()->id == pregunta.udid);
}

void Consentimiento::plantear(Pregunta pregunta)
{
    if (!esDelElegido(pregunta))
        return;
    QString aQuien;
    if (!pregunta.udid.isEmpty()) {
        const auto &suyo = *modelo.seleccionado();
        aQuien = u"%1 · %2 · …%3"_s.arg(suyo.nombre, suyo.modelo(), suyo.udidCorto());
    }
    preguntas.push_back({std::move(pregunta), aQuien});
    emit cambio();
}

void Consentimiento::avisar(const QString &texto)
{
    if (texto.isEmpty())
        return;
    avisos << texto;
    emit cambio();
}

void Consentimiento::cerrarAviso()
{
    if (avisos.isEmpty() || abierto())
        return;
    avisos.removeFirst();
    emit cambio();
}

void Consentimiento::cerrarLasDeOtro()
{
    const auto cuantas = preguntas.size();
    preguntas.remove_if([this](const Planteada &una) { return !esDelElegido(una.pregunta); });
    if (preguntas.size() != cuantas)
        emit cambio();
}

void Consentimiento::responder(bool aceptada)
{
    if (!abierto())
        return;
    auto pregunta = std::move(preguntas.front().pregunta);
    preguntas.pop_front();
    emit cambio();
    if (aceptada)
        confirmar(std::move(pregunta));
}

void Consentimiento::confirmar(Pregunta pregunta)
{
    if (const auto motivo = porQueYaNo(pregunta))
        return avisar(*motivo);
    const auto deQue = pregunta.motivo;
    cerradura.confirmar(deQue, [yo = QPointer(this), pregunta = std::move(pregunta)](bool confirmado) {
        if (!yo || !confirmado)
            return;
        yo->cerradura.marcarUso();
        // The system's question may have stood for long.
        if (const auto motivo = yo->porQueYaNo(pregunta))
            return yo->avisar(*motivo);
        pregunta.hacer();
    });
}

std::optional<QString> Consentimiento::porQueYaNo(const Pregunta &pregunta) const
{
    if (!esDelElegido(pregunta))
        return u"No he hecho nada: el iPhone para el que me lo pediste ya no es el que está elegido, o se ha "
               "desconectado."_s;
    if (modelo.tarea().enMarcha())
        return u"No he hecho nada: hay otro trabajo en marcha. Espera a que termine y vuelve a pedírmelo."_s;
    return pregunta.porQueYaNo ? pregunta.porQueYaNo() : std::nullopt;
}

} // namespace vellora
