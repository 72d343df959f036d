#include "backups/ComprobacionDeCopia.h"

#include "core/Ejecutor.h"
#include "core/Motor.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

// A large backup on a slow disk takes as long as it takes.
constexpr double unaSemana = 7 * 86400; // seconds

struct Encargo {
    ComprobacionDeCopia resultado;
    qint64 deTotal = 0;
    bool dictada = false; ///< the engine has told its verdict
};

void anotar(const Motor::Aviso &aviso, Encargo &encargo)
{
    using Veredicto = ComprobacionDeCopia::Veredicto;
    auto &resultado = encargo.resultado;
    if (aviso.tipo == "error"_L1)
        resultado.detalles << aviso.texto("motivo"_L1).value_or(QString());
    if (aviso.tipo != "comprobacion"_L1)
        return;
    const auto estado = aviso.texto("estado"_L1);
    encargo.dictada = true;
    resultado.veredicto = estado == u"entera"_s ? Veredicto::Entera
                          : estado == u"rota"_s ? Veredicto::Rota
                                                : Veredicto::SinComprobar;
    resultado.cifrada = aviso.datos["cifrada"_L1].toBool();
    resultado.discoLleno = aviso.datos["disco_lleno"_L1].toBool();
    const auto detalles = aviso.datos["detalles"_L1].toArray();
    for (const auto &uno : detalles)
        resultado.detalles << uno.toString();
}

ComprobacionDeCopia acabada(Encargo encargo)
{
    // An engine that fell over a damaged backup has proved nothing of it.
    if (!encargo.dictada)
        encargo.resultado.detalles << u"No he podido comprobar la copia."_s;
    return encargo.resultado;
}

} // namespace

void comprobarCopia(Ejecutor &motor, const QString &udid, const QString &carpeta, qsizetype rehusados,
                    const std::function<void(qint64, qint64)> &alAvanzar,
                    const std::function<void(const ComprobacionDeCopia &)> &alAcabar)
{
    const auto &lanzamiento = Motor::lanzamiento();
    const auto encargo = std::make_shared<Encargo>();
    const auto acabar = [encargo, alAcabar](int) {
        alAcabar(acabada(*encargo));
    };
    if (!lanzamiento)
        return acabar(-1);
    const auto linea = [encargo, alAvanzar](const QString &texto) {
        const auto aviso = Motor::interpretar(texto);
        if (!aviso)
            return;
        if (aviso->tipo == "total"_L1)
            encargo->deTotal = aviso->entero("n"_L1).value_or(0);
        if (aviso->tipo == "progreso"_L1)
            return alAvanzar(aviso->entero("hechos"_L1).value_or(0), encargo->deTotal);
        anotar(*aviso, *encargo);
    };
    const QStringList orden{u"comprobar-copia"_s, udid, carpeta, QString::number(rehusados)};
    motor.lanzar(lanzamiento->ejecutable, lanzamiento->argumentos + orden, linea, acabar);
}

ComprobacionDeCopia comprobarCopia(const QString &udid, const QString &carpeta)
{
    const auto &lanzamiento = Motor::lanzamiento();
    Encargo encargo;
    if (!lanzamiento)
        return acabada(encargo);
    const auto argumentos = lanzamiento->argumentos + QStringList{u"comprobar-copia"_s, udid, carpeta};
    const auto lineas = Ejecutor::rapido(lanzamiento->ejecutable, argumentos, unaSemana).split(u'\n');
    for (const auto &linea : lineas) {
        if (const auto aviso = Motor::interpretar(linea))
            anotar(*aviso, encargo);
    }
    return acabada(encargo);
}

} // namespace vellora
