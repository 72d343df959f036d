#include "session/OperacionesDeBateria.h"

#include "core/Ejecutor.h"
#include "core/Motor.h"
#include "core/Tarea.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr double segundosDeEspera = 40.0;
constexpr double centesimas = 100.0;

DatosBateria datosDe(const Motor::Aviso &aviso)
{
    const auto entero = [&](QLatin1StringView clave) {
        return static_cast<int>(
            std::clamp<qint64>(aviso.entero(clave).value_or(0), 0, std::numeric_limits<int>::max()));
    };
    const auto cierto = [&](QLatin1StringView clave) {
        return aviso.datos.value(clave).toBool();
    };
    DatosBateria datos;
    datos.ciclos = entero("ciclos"_L1);
    datos.maxima = entero("maxima"_L1);
    datos.disenio = entero("disenio"_L1);
    datos.nominal = entero("nominal"_L1);
    datos.actual = entero("actual"_L1);
    datos.temperatura = entero("temperatura"_L1);
    datos.voltaje = entero("voltaje"_L1);
    datos.minutosRestantes = entero("minutos_restantes"_L1);
    datos.desconexiones = entero("desconexiones"_L1);
    datos.cargando = cierto("cargando"_L1);
    datos.enchufado = cierto("enchufado"_L1);
    datos.llena = cierto("llena"_L1);
    datos.critica = cierto("critica"_L1);
    return datos;
}

QString resumenDe(const Motor::Aviso &aviso)
{
    const auto salud = aviso.entero("salud"_L1).value_or(0);
    auto texto = u"Tu batería está al %1% de cuando era nueva, con %2 ciclos de carga."_s.arg(salud).arg(
        aviso.entero("ciclos"_L1).value_or(0));
    const auto desde = aviso.texto("desde"_L1);
    const auto inicial = aviso.entero("salud_inicial"_L1);
    if (aviso.entero("mediciones"_L1).value_or(0) >= 2 && desde && inicial) {
        const auto bajada = *inicial - salud;
        texto += bajada >= 1 ? u"\n\nDesde el %1 ha bajado %2 puntos."_s.arg(*desde).arg(bajada)
                             : u"\n\nDesde el %1 no ha bajado."_s.arg(*desde);
    } else {
        texto += u"\n\nEsta es la primera medición. Repítelo de vez en cuando y podrás ver cómo evoluciona."_s;
    }
    if (salud < 80)
        texto += u"\n\nPor debajo del 80% Apple considera que toca cambiarla."_s;
    return texto;
}

/// The last notice of that kind.
std::optional<Motor::Aviso> avisoEn(const QString &salida, QLatin1StringView tipo)
{
    std::optional<Motor::Aviso> hallado;
    const auto lineas = partirEnLineas(salida);
    for (const auto &linea : lineas) {
        auto aviso = Motor::interpretar(linea);
        if (aviso && aviso->tipo == tipo)
            hallado = std::move(aviso);
    }
    return hallado;
}

/// What the engine says to a short question; empty when it did not answer in time.
QString preguntarAlMotor(const QString &orden, const QString &udid)
{
    const auto &motor = Motor::lanzamiento();
    if (!motor)
        return {};
    const auto respuesta =
        Ejecutor::preguntar(motor->ejecutable, motor->argumentos + QStringList{orden, udid}, segundosDeEspera);
    return respuesta.aTiempo ? respuesta.salida : QString();
}

/// The frame of the two jobs: what the notices leave in `hecho` says how it ended.
void mirar(Tarea &tarea, const QStringList &orden, const QString &titulo, const Tarea::AlAvisar &alAvisar,
           const std::function<void()> &alAcabar, const std::shared_ptr<bool> &hecho)
{
    const auto avisado = [&tarea, alAvisar](const Motor::Aviso &aviso) {
        if (aviso.tipo == "error"_L1)
            tarea.apunta(aviso.texto("motivo"_L1).value_or(QString()));
        else
            alAvisar(aviso);
    };
    const auto terminado = [&tarea, hecho](int codigo) {
        const bool bien = codigo == 0 && *hecho;
        if (!bien)
            tarea.ponDetalle(u"No se pudo completar"_s);
        tarea.cerrar(bien);
    };
    tarea.lanzarMotorPublico(orden, titulo, false, avisado, terminado);
    if (!tarea.enMarcha())
        return alAcabar(); // there is no engine
    QObject::connect(&tarea, &Tarea::acabada, &tarea, alAcabar, Qt::SingleShotConnection);
}

} // namespace

SaludBateria saludBateriaEn(const QString &salida)
{
    SaludBateria salud;
    const auto aviso = avisoEn(salida, "bateria"_L1);
    if (!aviso)
        return salud;
    salud.ciclos = aviso->entero("ciclos"_L1);
    const auto disenio = aviso->entero("disenio"_L1).value_or(0);
    if (const auto maxima = aviso->entero("maxima"_L1); maxima && disenio > 0)
        salud.salud = std::llround(static_cast<double>(*maxima) / static_cast<double>(disenio) * 100.0);
    if (const auto temperatura = aviso->entero("temperatura"_L1))
        salud.grados = static_cast<double>(*temperatura) / centesimas;
    return salud;
}

SaludBateria saludBateria(const QString &udid)
{
    return saludBateriaEn(preguntarAlMotor(u"bateria"_s, udid));
}

std::optional<InfoRed> redEn(const QString &salida)
{
    const auto aviso = avisoEn(salida, "red"_L1);
    if (!aviso)
        return {};
    const auto texto = [&](QLatin1StringView clave) {
        return aviso->texto(clave).value_or(QString());
    };
    return InfoRed{texto("operador"_L1), texto("telefono"_L1), texto("sim_estado"_L1),
                   aviso->datos.value("wifi_on"_L1).toBool(), aviso->datos.value("avion"_L1).toBool()};
}

std::optional<InfoRed> redDe(const QString &udid)
{
    return redEn(preguntarAlMotor(u"red"_s, udid));
}

HistorialBateria leerHistorialBateria(const QString &fichero)
{
    QFile abierto(fichero);
    if (!abierto.open(QIODevice::ReadOnly))
        return {};
    HistorialBateria historial;
    const auto medidas = QJsonDocument::fromJson(abierto.readAll()).array();
    for (const auto &medida : medidas) {
        const auto fecha = medida[u"fecha"_s];
        const auto salud = medida[u"salud"_s];
        if (fecha.isString() && salud.isDouble())
            historial.append({fecha.toString(), salud.toInteger()});
    }
    return historial;
}

void mirarBateria(Tarea &tarea, const QString &udid, const QString &fichero,
                  const std::function<void(const std::optional<DatosBateria> &, const HistorialBateria &)> &resultado)
{
    const auto hecho = std::make_shared<bool>(false);
    const auto datos = std::make_shared<std::optional<DatosBateria>>();
    const auto alAvisar = [&tarea, hecho, datos](const Motor::Aviso &aviso) {
        if (aviso.tipo != "bateria"_L1)
            return;
        *datos = datosDe(aviso);
        *hecho = true;
        tarea.ponDetalle(u"%1% de salud · %2 ciclos"_s.arg((*datos)->salud()).arg((*datos)->ciclos));
    };
    const auto alAcabar = [datos, fichero, resultado] {
        resultado(*datos, leerHistorialBateria(fichero));
    };
    mirar(tarea, {u"bateria"_s, udid}, u"Mirando la batería"_s, alAvisar, alAcabar, hecho);
}

void apuntarBateria(Tarea &tarea, const QString &udid, const QString &fichero,
                    const std::function<void(const QString &)> &resumen)
{
    const auto hecho = std::make_shared<bool>(false);
    const auto texto = std::make_shared<QString>();
    const auto alAvisar = [&tarea, hecho, texto](const Motor::Aviso &aviso) {
        if (aviso.tipo != "historial"_L1)
            return;
        *hecho = true;
        *texto = resumenDe(aviso);
        tarea.ponDetalle(u"%1% de salud, %2 ciclos"_s.arg(aviso.entero("salud"_L1).value_or(0))
                             .arg(aviso.entero("ciclos"_L1).value_or(0)));
    };
    const auto alAcabar = [hecho, texto, resumen] {
        if (*hecho)
            resumen(*texto);
    };
    mirar(tarea, {u"bateria-historial"_s, udid, fichero}, u"Apuntando la salud de la batería"_s, alAvisar, alAcabar,
          hecho);
}

} // namespace vellora
