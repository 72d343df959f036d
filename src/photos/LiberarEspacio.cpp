#include "photos/LiberarEspacio.h"

#include "core/Formato.h"
#include "core/Tarea.h"
#include "photos/CursoDeBorrado.h"

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

void contarError(Tarea &tarea, const Motor::Aviso &aviso)
{
    if (aviso.tipo == "error"_L1)
        tarea.apunta(u"Error: "_s + aviso.texto("motivo"_L1).value_or(QString()));
}

/// What is left, as far as it is known.
void contarLoQueQueda(Tarea &tarea, const Motor::Aviso &aviso, const LoQueSigue &sigue)
{
    if (sigue.sinPrueba > 0)
        tarea.apunta(
            u"%1 archivos se quedan en el iPhone porque su copia no se ha podido comprobar. Cópialos otra vez."_s.arg(
                sigue.sinPrueba));
    if (sigue.siguen > sigue.sinPrueba)
        tarea.apunta(
            u"%1 archivos siguen ahí porque el iPhone no ha dejado borrarlos."_s.arg(sigue.siguen - sigue.sinPrueba));
    if (sigue.sinMirar > 0)
        return tarea.apunta(u"No sé cuántas fotos quedan: el iPhone no me ha dejado mirar todas sus carpetas."_s);
    tarea.apunta(u"Quedan %1 fotos en el carrete (las que no estaban copiadas)."_s.arg(
        aviso.entero("quedan_en_carrete"_L1).value_or(0)));
}

void contarFin(Tarea &tarea, const Motor::Aviso &aviso)
{
    const LoQueSigue sigue(aviso);
    const auto borrados = aviso.entero("borrados"_L1).value_or(0);
    if (borrados == 0) {
        tarea.ponDetalle(u"No se ha borrado nada"_s);
        return tarea.apunta(sigue.porQueNada());
    }
    const auto libres = Formato::tamano(aviso.entero("liberados"_L1).value_or(0));
    tarea.ponDetalle(u"%1 borrados · %2 libres"_s.arg(borrados).arg(libres));
    tarea.apunta(u"Espacio recuperado: %1."_s.arg(libres));
    contarLoQueQueda(tarea, aviso, sigue);
    if (aviso.datos["lista_borrada"_L1].toBool())
        tarea.apunta(u"REINICIA EL IPHONE: la app Fotos se reconstruirá con lo que queda."_s);
    else if (sigue.sinMirar > 0)
        tarea.apunta(
            u"He dejado como está la lista de la app Fotos, porque no sé todo lo que queda. REINICIA EL IPHONE."_s);
    else
        tarea.apunta(u"No pude tirar la lista de la app Fotos; puede que las sigas viendo."_s);
}

void alBorrar(Tarea &tarea, const Motor::Aviso &aviso)
{
    if (aviso.tipo == "plan"_L1) {
        const auto cuantos = aviso.entero("a_borrar"_L1).value_or(0);
        tarea.ponAvance(tarea.hechos(), cuantos);
        tarea.ponInicio(QDateTime::currentDateTimeUtc());
        tarea.apunta(u"Voy a borrar %1 archivos que ya están a salvo en el Mac."_s.arg(cuantos));
        if (const auto quedan = aviso.entero("se_quedan"_L1).value_or(0); quedan > 0)
            tarea.apunta(u"Dejo %1 archivos en el iPhone porque NO están copiados."_s.arg(quedan));
    } else if (aviso.tipo == "progreso"_L1) {
        const auto hechos = aviso.entero("hechos"_L1).value_or(0);
        tarea.ponAvance(hechos, tarea.deTotal());
        tarea.ponDetalle(u"Borrados %1 de %2"_s.arg(hechos).arg(tarea.deTotal()));
    } else if (aviso.tipo == "fin"_L1) {
        contarFin(tarea, aviso);
    } else {
        contarError(tarea, aviso);
    }
}

} // namespace

void planDeLiberacion(Tarea &tarea, const QString &udid, const QString &carpetaFotos,
                      const std::function<void(const PlanLiberar &)> &resultado)
{
    const auto alAvisar = [&tarea, resultado](const Motor::Aviso &aviso) {
        if (aviso.tipo != "plan"_L1)
            return contarError(tarea, aviso);
        const PlanLiberar plan{aviso.entero("a_borrar"_L1).value_or(0), aviso.entero("se_quedan"_L1).value_or(0),
                               aviso.entero("bytes"_L1).value_or(0),
                               aviso.texto("al_quitar_lista"_L1).value_or(QString())};
        tarea.ponDetalle(u"%1 archivos se pueden borrar sin riesgo"_s.arg(plan.archivos));
        resultado(plan);
    };
    tarea.lanzarMotorPublico({u"liberar"_s, udid, carpetaFotos}, u"Calculando qué se puede borrar"_s, false, alAvisar,
                             [&tarea](int codigo) { tarea.cerrar(codigo == 0); });
}

void liberarEspacio(Tarea &tarea, const QString &udid, const QString &carpetaFotos)
{
    tarea.muestra();
    const auto curso = std::make_shared<CursoDeBorrado>();
    const auto alAvisar = [&tarea, curso](const Motor::Aviso &aviso) {
        curso->mirar(aviso);
        alBorrar(tarea, aviso);
    };
    tarea.lanzarMotorPublico({u"liberar"_s, udid, carpetaFotos}, u"Liberando espacio en el iPhone"_s, true, alAvisar,
                             [&tarea, curso](int codigo) { curso->cerrar(tarea, codigo); });
    tarea.esperaSuFinAlCancelar();
}

} // namespace vellora
