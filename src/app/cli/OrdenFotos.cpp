#include "app/cli/Consola.h"
#include "app/cli/TrabajoSinVentana.h"
#include "core/Formato.h"
#include "photos/CopiarFotos.h"
#include "photos/ElegidasDelCarrete.h"
#include "photos/LiberarEspacio.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto siEstaAbierta = u"Vellora ya está abierta. Hazlo desde su ventana, o ciérrala."_s;

QString carpetaDe(const OpcionesDeOrden &opciones, const Modelo &modelo)
{
    return opciones.carpeta ? QDir().absoluteFilePath(*opciones.carpeta) : modelo.carpetaFotos();
}

int copiar(const OpcionesDeOrden &opciones)
{
    const auto empezar = [&opciones](Modelo &modelo, const QString &udid) {
        copiarFotosRapido(modelo.tarea(), udid, carpetaDe(opciones, modelo));
    };
    const auto resultado = [&opciones](Modelo &modelo, const QString &) {
        return carpetaDe(opciones, modelo);
    };
    return hacerSinVentana(opciones, {u"Fotos y vídeos de %1"_s, false, empezar, resultado}, siEstaAbierta);
}

int planear(const OpcionesDeOrden &opciones)
{
    const auto plan = std::make_shared<PlanLiberar>();
    const auto empezar = [&opciones, plan](Modelo &modelo, const QString &udid) {
        planDeLiberacion(modelo.tarea(), udid, carpetaDe(opciones, modelo),
                         [plan](const PlanLiberar &hecho) { *plan = hecho; });
    };
    const auto decir = [&opciones, plan] {
        if (opciones.json)
            return Consola::resultado(QJsonDocument(QJsonObject{
                {u"archivos"_s, plan->archivos}, {u"sin_copiar"_s, plan->sinCopiar}, {u"bytes"_s, plan->bytes}}));
        Consola::resultado(
            u"Se pueden borrar sin riesgo: %1 archivos (%2)"_s.arg(plan->archivos).arg(Formato::tamano(plan->bytes)));
        Consola::resultado(u"Se quedan, porque no están copiados: %1 archivos"_s.arg(plan->sinCopiar));
    };
    return hacerSinVentana(opciones, {u"Qué se puede borrar de %1"_s, false, empezar, {}, decir}, siEstaAbierta);
}

QJsonObject enJson(const FotoDelCarrete &foto)
{
    return {{u"ruta"_s, foto.ruta},    {u"bytes"_s, foto.bytes},       {u"fecha"_s, foto.fecha},
            {u"tipo"_s, foto.tipo},    {u"elemento"_s, foto.elemento}, {u"copiado"_s, foto.copiado},
            {u"estado"_s, foto.estado}};
}

int listar(const OpcionesDeOrden &opciones)
{
    const auto fotos = std::make_shared<QList<FotoDelCarrete>>();
    const auto empezar = [&opciones, fotos](Modelo &modelo, const QString &udid) {
        listarCarrete(modelo.tarea(), udid, carpetaDe(opciones, modelo),
                      [fotos](const CarreteListado &leido) { *fotos = leido.fotos; });
    };
    const auto decir = [&opciones, fotos] {
        QJsonArray lista;
        for (const auto &foto : std::as_const(*fotos)) {
            if (opciones.json)
                lista << enJson(foto);
            else
                Consola::resultado(QStringList{foto.ruta, QString::number(foto.bytes), foto.tipo,
                                               foto.copiado ? u"copiado"_s : u"sin copiar"_s, foto.estado});
        }
        if (opciones.json)
            Consola::resultado(QJsonDocument(lista));
    };
    return hacerSinVentana(opciones, {u"El carrete de %1"_s, false, empezar, {}, decir}, siEstaAbierta);
}

} // namespace

int ordenFotos(const OpcionesDeOrden &opciones)
{
    if (opciones.palabra == "copiar"_L1)
        return copiar(opciones);
    if (opciones.palabra == "plan"_L1)
        return planear(opciones);
    if (opciones.palabra == "listar"_L1)
        return listar(opciones);
    Consola::palabras(u"Con «fotos» va copiar, plan o listar; no conozco «%1»."_s.arg(opciones.palabra));
    return SalidaMalUso;
}

} // namespace vellora
