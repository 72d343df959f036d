#include "engine/Ordenes.h"
#include "engine/device/Servicios.h"

#include <QDate>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <cmath>

using namespace Qt::StringLiterals;

namespace vellora::motor
{

namespace
{

/// The battery's entry in the phone's hardware registry. Capacities are mAh; temperature, hundredths of a degree
/// Celsius; voltage, mV; time, minutes, with 65535 for one that is not known.
Resultado<Plist> leerBateria(const QString &udid)
{
    const auto telefono = Telefono::buscar(udid);
    if (!telefono)
        return Resultado<Plist>::fallo(telefono.motivo());
    const auto diagnostico = Diagnostico::abrir(*telefono);
    if (!diagnostico)
        return Resultado<Plist>::fallo(diagnostico.motivo());
    auto registro = diagnostico->registro("AppleSmartBattery");
    if (!registro || !registro->raiz()["IORegistry"]["CycleCount"].entero())
        return Resultado<Plist>::fallo(u"El iPhone no dice cómo está su batería."_s);
    return *std::move(registro);
}

qint64 numero(const NodoPlist &bateria, const char *clave)
{
    return bateria[clave].entero().value_or(0);
}

/// What it holds now: the raw measure where the phone tells it, the nominal one otherwise.
qint64 maxima(const NodoPlist &bateria)
{
    const auto cruda = numero(bateria, "AppleRawMaxCapacity");
    return cruda > 0 ? cruda : numero(bateria, "NominalChargeCapacity");
}

qint64 minutos(const NodoPlist &bateria)
{
    constexpr qint64 noSeSabe = 65535;
    const auto quedan = numero(bateria, "TimeRemaining");
    return quedan == noSeSabe ? 0 : quedan;
}

bool esCierto(const NodoPlist &bateria, const char *clave)
{
    return bateria[clave].logico().value_or(numero(bateria, clave) != 0);
}

/// The measurements kept so far; absent when the file is there and holds something else.
std::optional<QJsonArray> leerHistorial(const QString &ruta)
{
    QFile fichero(ruta);
    if (!fichero.exists())
        return QJsonArray();
    if (!fichero.open(QIODevice::ReadOnly))
        return {};
    const auto documento = QJsonDocument::fromJson(fichero.readAll());
    return documento.isArray() ? std::optional(documento.array()) : std::nullopt;
}

bool guardar(const QString &ruta, const QJsonArray &historial)
{
    QSaveFile fichero(ruta);
    fichero.setDirectWriteFallback(false);
    const auto bytes = QJsonDocument(historial).toJson();
    return fichero.open(QIODevice::WriteOnly) && fichero.write(bytes) == bytes.size() && fichero.commit();
}

} // namespace

int bateria(const QStringList &argumentos, Avisos &avisar)
{
    const auto leida = leerBateria(argumentos[0]);
    if (!leida)
        return avisar.error(leida.motivo());
    const auto pila = leida->raiz()["IORegistry"];
    avisar.avisar(u"bateria"_s, {{u"ciclos"_s, numero(pila, "CycleCount")},
                                 {u"maxima"_s, maxima(pila)},
                                 {u"disenio"_s, numero(pila, "DesignCapacity")},
                                 {u"nominal"_s, numero(pila, "NominalChargeCapacity")},
                                 {u"actual"_s, numero(pila, "AppleRawCurrentCapacity")},
                                 {u"temperatura"_s, numero(pila, "Temperature")},
                                 {u"voltaje"_s, numero(pila, "Voltage")},
                                 {u"minutos_restantes"_s, minutos(pila)},
                                 {u"desconexiones"_s, numero(pila, "BatteryCellDisconnectCount")},
                                 {u"cargando"_s, esCierto(pila, "IsCharging")},
                                 {u"enchufado"_s, esCierto(pila, "ExternalConnected")},
                                 {u"llena"_s, esCierto(pila, "FullyCharged")},
                                 {u"critica"_s, esCierto(pila, "AtCriticalLevel")}});
    return 0;
}

int bateriaHistorial(const QStringList &argumentos, Avisos &avisar)
{
    const auto leida = leerBateria(argumentos[0]);
    if (!leida)
        return avisar.error(leida.motivo());
    const auto pila = leida->raiz()["IORegistry"];
    const auto disenio = numero(pila, "DesignCapacity");
    if (disenio < 1 || maxima(pila) < 1)
        return avisar.error(u"El iPhone no dice cómo está su batería."_s);
    const qint64 salud = std::llround(static_cast<double>(maxima(pila)) / static_cast<double>(disenio) * 100.0);

    const auto &ruta = argumentos[1];
    auto historial = leerHistorial(ruta);
    if (!historial) {
        // Whatever it is, it is the owner's: it stays, under another name.
        if (!QFile::rename(ruta, ruta + u".ilegible-"_s + QDate::currentDate().toString(Qt::ISODate)))
            return avisar.error(u"No se puede leer el historial de la batería."_s);
        historial = QJsonArray();
    }
    const auto hoy = QDate::currentDate().toString(u"dd/MM/yyyy"_s);
    const QJsonObject medida{{u"fecha"_s, hoy}, {u"salud"_s, salud}};
    if (!historial->isEmpty() && historial->last()[u"fecha"_s].toString() == hoy)
        historial->replace(historial->size() - 1, medida);
    else
        historial->append(medida);
    if (!guardar(ruta, *historial))
        return avisar.error(u"No puedo guardar el historial de la batería. Mira si queda sitio en el disco."_s);
    avisar.avisar(u"historial"_s, {{u"mediciones"_s, historial->size()},
                                   {u"salud"_s, salud},
                                   {u"ciclos"_s, numero(pila, "CycleCount")},
                                   {u"desde"_s, historial->first()[u"fecha"_s]},
                                   {u"salud_inicial"_s, historial->first()[u"salud"_s]}});
    return 0;
}

} // namespace vellora::motor
