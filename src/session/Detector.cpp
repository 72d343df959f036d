#include "session/Detector.h"

#include "core/Ejecutor.h"
#include "core/Herramientas.h"

using namespace Qt::StringLiterals;

namespace vellora::Detector
{

namespace
{

QString sinBlancos(QStringView trozo)
{
    const auto sobra = [](QChar c) {
        return c == u' ' || c == u'\t';
    };
    while (!trozo.isEmpty() && sobra(trozo.front()))
        trozo = trozo.sliced(1);
    while (!trozo.isEmpty() && sobra(trozo.back()))
        trozo.chop(1);
    return trozo.toString();
}

/// The questions to one phone. After one that got no answer in time no more are put: each would take its whole limit.
class Preguntas
{
public:
    explicit Preguntas(QString elUdid) : udid(std::move(elUdid)) {}

    std::optional<QString> valor(const QString &clave)
    {
        return valorEn(preguntar(u"-k"_s, clave, segundosParaUnValor));
    }
    QMap<QString, QString> dominio(const QString &nombre)
    {
        return paresEn(preguntar(u"-q"_s, nombre, segundosParaUnDominio));
    }
    bool callado() const { return callado_; }

private:
    static constexpr double segundosParaUnValor = 8;
    static constexpr double segundosParaUnDominio = 10;

    QString preguntar(const QString &opcion, const QString &que, double segundos)
    {
        if (callado_ || !Herramientas::ideviceInfo())
            return {};
        const auto respuesta =
            Ejecutor::preguntar(*Herramientas::ideviceInfo(), {u"-u"_s, udid, opcion, que}, segundos);
        callado_ = !respuesta.aTiempo;
        return callado_ ? QString() : respuesta.salida;
    }

    QString udid;
    bool callado_ = false;
};

std::optional<qint64> numeroDe(const QMap<QString, QString> &pares, const QString &clave)
{
    bool entero = false;
    const auto numero = pares.value(clave).toLongLong(&entero, 10);
    return entero ? std::optional(numero) : std::nullopt;
}

} // namespace

QSemaphore &turno()
{
    static QSemaphore semaforo(1);
    return semaforo;
}

QStringList udidsEn(const QString &salida)
{
    QStringList udids;
    const auto lineas = salida.split(u'\n', Qt::SkipEmptyParts);
    for (const auto &linea : lineas) {
        const auto udid = sinBlancos(linea);
        if (udid.size() > 10)
            udids << udid;
    }
    return udids;
}

std::optional<QString> valorEn(const QString &salida)
{
    const auto valor = salida.trimmed();
    const bool seFue = valor.startsWith("ERROR: Device "_L1) && valor.endsWith(" not found!"_L1);
    const bool nadie = valor.startsWith("ERROR: No device found"_L1);
    return valor.isEmpty() || seFue || nadie ? std::nullopt : std::optional(valor);
}

QMap<QString, QString> paresEn(const QString &salida)
{
    QMap<QString, QString> pares;
    const auto lineas = salida.split(u'\n', Qt::SkipEmptyParts);
    for (const auto &linea : lineas) {
        const auto corte = linea.indexOf(u':');
        if (corte > 0 && corte + 1 < linea.size())
            pares[sinBlancos(QStringView(linea).first(corte))] = sinBlancos(QStringView(linea).sliced(corte + 1));
    }
    return pares;
}

QStringList conectados()
{
    if (!Herramientas::ideviceID())
        return {};
    return udidsEn(Ejecutor::rapido(*Herramientas::ideviceID(), {u"-l"_s}, 8));
}

std::optional<Dispositivo> leer(const QString &udid, bool *callado)
{
    return enTurno([&]() -> std::optional<Dispositivo> {
        Preguntas preguntas(udid);
        std::optional<Dispositivo> leido;
        if (const auto nombre = preguntas.valor(u"DeviceName"_s)) {
            const auto bateria = preguntas.dominio(u"com.apple.mobile.battery"_s);
            const auto disco = preguntas.dominio(u"com.apple.disk_usage"_s);
            const auto producto = preguntas.valor(u"ProductType"_s);
            const auto version = preguntas.valor(u"ProductVersion"_s);
            leido = componer(udid, *nombre, bateria, disco, producto, version);
        }
        if (callado != nullptr)
            *callado = preguntas.callado();
        return leido;
    });
}

Lectura leerTodos()
{
    Lectura lectura;
    lectura.conectados = conectados();
    for (const auto &udid : lectura.conectados) {
        bool callado = false;
        if (const auto uno = leer(udid, &callado))
            lectura.leidos << *uno;
        if (callado)
            lectura.callados << udid;
    }
    return lectura;
}

Dispositivo componer(const QString &udid, const QString &nombre, const QMap<QString, QString> &bateria,
                     const QMap<QString, QString> &disco, const std::optional<QString> &producto,
                     const std::optional<QString> &version)
{
    const auto total = u"TotalDiskCapacity"_s;
    Dispositivo uno;
    uno.id = udid;
    uno.nombre = nombre;
    uno.modeloCrudo = producto.value_or(u"desconocido"_s);
    uno.sistema = version.value_or(u"—"_s);
    uno.bateria = numeroDe(bateria, u"BatteryCurrentCapacity"_s);
    uno.cargando = bateria.value(u"BatteryIsCharging"_s) == "true"_L1;
    uno.libresBytes = numeroDe(disco, u"AmountDataAvailable"_s);
    uno.totalBytes = numeroDe(disco, disco.contains(total) ? total : u"TotalDataCapacity"_s);
    return uno;
}

} // namespace vellora::Detector
