#include "session/BateriaYRed.h"

#include "core/SegundoPlano.h"
#include "session/Detector.h"
#include "session/Modelo.h"

#include <QDir>
#include <QLocale>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace vellora
{

BateriaYRed::BateriaYRed(Modelo &elModelo, QObject *padre) : QObject(padre), modelo(elModelo)
{
    connect(&modelo, &Modelo::cambioDeSesion, this, &BateriaYRed::olvidarSiEsOtro);
}

/// What was told by one phone is not shown for another. While none is there, the last one's stays for its return.
void BateriaYRed::olvidarSiEsOtro()
{
    const auto &elegido = modelo.seleccionado();
    if (!elegido || elegido->id == deQuien)
        return;
    deQuien = elegido->id;
    silenciosa = {};
    bateria_.reset();
    historial.clear();
    verBateria_ = false;
    medida_.clear();
    red_.reset();
    emit cambio();
}

QString BateriaYRed::resumen() const
{
    QStringList partes;
    if (silenciosa.salud)
        partes << u"%1 % de salud"_s.arg(*silenciosa.salud);
    if (silenciosa.ciclos)
        partes << (*silenciosa.ciclos == 1 ? u"1 ciclo"_s : u"%1 ciclos"_s.arg(*silenciosa.ciclos));
    if (silenciosa.grados)
        partes << QLocale(QLocale::Spanish, QLocale::Spain).toString(*silenciosa.grados, 'f', 1) + u" °C"_s;
    return partes.join(u" · "_s);
}

QStringList BateriaYRed::avisosDeRed() const
{
    QStringList avisos;
    if (!hayAvisoDeRed())
        return avisos;
    if (red_->avion)
        avisos << u"Está en modo avión: no llama ni recibe."_s;
    if (!red_->simEstado.toLower().contains("lista"_L1))
        avisos << (red_->simEstado.isEmpty() ? u"No dice cómo está su tarjeta SIM."_s
                                             : u"Tarjeta SIM: %1."_s.arg(red_->simEstado));
    if (red_->operador.isEmpty() || red_->operador == "Desconocido"_L1)
        avisos << u"No dice cuál es su operador."_s;
    if (!red_->wifiOn)
        avisos << u"Tiene el wifi apagado."_s;
    return avisos;
}

QVariantList BateriaYRed::historialVariante() const
{
    QVariantList lista;
    for (const auto &[fecha, salud] : historial)
        lista << QVariantMap{{u"fecha"_s, fecha}, {u"salud"_s, salud}};
    return lista;
}

QString BateriaYRed::fichero() const
{
    return modelo.carpetaBase() + u"/Informes/bateria.json"_s;
}

void BateriaYRed::cargarSaludBateria()
{
    olvidarSiEsOtro();
    const auto &elegido = modelo.seleccionado();
    if (!elegido || preguntando || silenciosa.ciclos)
        return;
    preguntando = true;
    const auto preguntar = [udid = elegido->id] {
        return Detector::enTurno([&] { return saludBateria(udid); });
    };
    enSegundoPlano(this, preguntar, [this, udid = elegido->id](const SaludBateria &salud) {
        preguntando = false;
        if (udid != deQuien)
            return cargarSaludBateria(); // another phone is selected by now
        if (!salud.ciclos)
            return;
        silenciosa = salud;
        emit cambio();
    });
}

void BateriaYRed::quizaMirarRed()
{
    olvidarSiEsOtro();
    const auto &elegido = modelo.seleccionado();
    // Once it has told it is not asked again; while it has not, after each reading.
    if (!elegido || red_ || mirandoRed)
        return;
    mirandoRed = true;
    const auto preguntar = [udid = elegido->id] {
        return Detector::enTurno([&] { return redDe(udid); });
    };
    enSegundoPlano(this, preguntar, [this, udid = elegido->id](const std::optional<InfoRed> &leida) {
        mirandoRed = false;
        if (udid != deQuien)
            return quizaMirarRed();
        if (!leida)
            return;
        red_ = leida;
        emit cambio();
    });
}

void BateriaYRed::mirar()
{
    const auto &elegido = modelo.seleccionado();
    auto &tarea = modelo.tarea();
    if (!elegido || tarea.enMarcha())
        return;
    const auto mirada = [this, yo = QPointer(this), &tarea, udid = elegido->id](
                            const std::optional<DatosBateria> &datos, const HistorialBateria &anotado) {
        if (!yo || !datos || udid != deQuien)
            return;
        bateria_ = datos;
        historial = anotado;
        medida_.clear();
        verBateria_ = true;
        if (!tarea.enMarcha())
            tarea.cerrarAviso(); // the view says it all
        emit cambio();
    };
    mirarBateria(tarea, elegido->id, fichero(), mirada);
}

void BateriaYRed::apuntar()
{
    const auto &elegido = modelo.seleccionado();
    auto &tarea = modelo.tarea();
    if (!elegido || tarea.enMarcha())
        return;
    QDir().mkpath(modelo.carpetaBase() + u"/Informes"_s);
    apuntarBateria(tarea, elegido->id, fichero(),
                   [this, yo = QPointer(this), &tarea, udid = elegido->id](const QString &texto) {
                       if (!yo || udid != deQuien)
                           return;
                       medida_ = texto;
                       historial = leerHistorialBateria(fichero());
                       if (!tarea.enMarcha())
                           tarea.cerrarAviso();
                       emit cambio();
                   });
}

void BateriaYRed::cierra()
{
    verBateria_ = false;
    medida_.clear();
    emit cambio();
}

} // namespace vellora
