#include "photos/BorrarFotos.h"

#include "core/Formato.h"
#include "core/Tarea.h"

#include <QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

qint64 numero(const Motor::Aviso &aviso, QLatin1StringView clave)
{
    return aviso.entero(clave).value_or(0);
}

QString motivo(const Motor::Aviso &aviso)
{
    return aviso.texto("motivo"_L1).value_or(QString());
}

void finDeLaBiblioteca(Tarea &tarea, const Motor::Aviso &aviso, const Resumen &resumen)
{
    const auto borrados = numero(aviso, "borrados"_L1);
    const auto fotos = numero(aviso, "quedan_fotos"_L1);
    const auto miniaturas = numero(aviso, "quedan_miniaturas"_L1);
    const bool sinLista = aviso.datos["lista_borrada"_L1].toBool();
    const bool todoMirado = numero(aviso, "sin_mirar"_L1) == 0;
    tarea.apunta(u"Borrados %1 archivos en total."_s.arg(borrados));
    tarea.apunta(u"Comprobación: quedan %1 fotos en el carrete y %2 miniaturas."_s.arg(fotos).arg(miniaturas));
    if (!todoMirado)
        tarea.apunta(u"Hay carpetas del iPhone que no me ha dejado mirar: puede que queden más."_s);
    tarea.apunta(sinLista ? u"La lista de la app Fotos está borrada."_s
                          : u"No pude borrar la lista de la app Fotos."_s);
    if (fotos == 0 && miniaturas == 0 && sinLista && todoMirado) {
        tarea.ponDetalle(u"Todo borrado · %1 archivos"_s.arg(borrados));
        return resumen(u"Listo: %1 archivos borrados. No queda ni una foto, ni una miniatura, ni la lista.\n\n"
                       "👉 REINICIA EL IPHONE AHORA. Al arrancar, la app Fotos se reconstruye vacía.\n\n"
                       "Tus %2 fotos siguen a salvo en el Mac."_s.arg(borrados)
                           .arg(Formato::entero(numero(aviso, "fotos_en_copia"_L1))));
    }
    tarea.ponDetalle(borrados == 0 ? u"No se ha borrado nada"_s : u"Borrado incompleto"_s);
    resumen(u"He borrado %1 archivos, pero quedan %2 fotos y %3 miniaturas"_s.arg(borrados).arg(fotos).arg(miniaturas) +
            (sinLista ? QString() : u", y la lista de la app Fotos sigue ahí"_s) +
            (todoMirado ? QString() : u", y hay carpetas que el iPhone no me ha dejado mirar"_s) +
            u".\n\nSuele ser porque el iPhone está usando esos archivos. Desbloquéalo, cierra la app Fotos y dale otra "
            "vez."_s +
            (borrados > 0 ? u"\n\n👉 REINICIA EL IPHONE para que la app Fotos se ponga al día."_s : QString()));
}

void finDeLaRecuperacion(Tarea &tarea, const Motor::Aviso &aviso)
{
    const auto recuperadas = numero(aviso, "recuperadas"_L1);
    const auto saltadas = numero(aviso, "saltadas"_L1);
    const auto tamano = Formato::tamano(numero(aviso, "bytes"_L1));
    if (recuperadas == 0 && saltadas == 0) {
        tarea.ponDetalle(u"Esta copia no traía el carrete"_s);
        return tarea.apunta(u"Esta copia de seguridad no incluye las fotos."_s);
    }
    tarea.ponDetalle(u"%1 fotos recuperadas · %2"_s.arg(recuperadas).arg(tamano));
    tarea.apunta(u"He sacado %1 fotos y vídeos de la copia (%2)"_s.arg(recuperadas).arg(tamano) +
                 (saltadas > 0 ? u", %1 ya estaban"_s.arg(saltadas) : QString()) +
                 u".\n\nEstán en «Fotos recuperadas», con las mismas carpetas que tenían en el iPhone."_s);
}

void finDeTodas(Tarea &tarea, const Motor::Aviso &aviso)
{
    const auto borrados = numero(aviso, "borrados"_L1);
    const auto libres = Formato::tamano(numero(aviso, "liberados"_L1));
    const LoQueSigue sigue(aviso);
    if (borrados == 0) {
        tarea.ponDetalle(u"No se ha borrado nada"_s);
        return tarea.apunta(sigue.porQueNada());
    }
    tarea.ponDetalle(u"%1 archivos borrados · %2 libres"_s.arg(borrados).arg(libres));
    if (sigue.siguen > 0)
        tarea.apunta(u"%1 archivos siguen ahí porque el iPhone no ha dejado borrarlos."_s.arg(sigue.siguen));
    for (
        const auto &linea :
        {u"Borrados %1 archivos. Espacio recuperado: %2."_s.arg(borrados).arg(libres), QString(),
         u"OJO: la app Fotos del iPhone va a SEGUIR enseñándolas un rato."_s,
         u"Son entradas viejas de su lista, sin la foto detrás: al abrirlas saldrán en blanco o darán error."_s,
         u"Se limpian solas al reiniciar el iPhone. Si después de reiniciar siguen ahí, hay que borrarlas desde la propia app Fotos del teléfono."_s})
        tarea.apunta(linea);
}

/// What most of them do with what the engine tells on the way.
bool comun(Tarea &tarea, const Motor::Aviso &aviso)
{
    if (aviso.tipo == "total"_L1) {
        tarea.ponAvance(tarea.hechos(), numero(aviso, "n"_L1));
        tarea.ponInicio(QDateTime::currentDateTimeUtc());
    } else if (aviso.tipo == "progreso"_L1) {
        tarea.ponAvance(numero(aviso, "hechos"_L1), tarea.deTotal());
    } else if (aviso.tipo == "error"_L1) {
        tarea.apunta(motivo(aviso));
    } else {
        return false;
    }
    return true;
}

Tarea::AlTerminar cerrarSegun(Tarea &tarea)
{
    return [&tarea](int codigo) {
        tarea.cerrar(codigo == 0);
    };
}

CopiaDelCarrete copiaDe(const Motor::Aviso &aviso)
{
    return {aviso.datos["bien"_L1].toBool(),
            motivo(aviso),
            aviso.texto("telefono"_L1).value_or(QString()),
            QDateTime::fromSecsSinceEpoch(numero(aviso, "fecha"_L1)),
            numero(aviso, "fotos"_L1),
            numero(aviso, "solo_icloud"_L1),
            aviso.texto("al_quitar_lista"_L1).value_or(QString())};
}

void planear(Tarea &tarea, const QStringList &orden, const AlPlanear &resultado)
{
    const auto plan = std::make_shared<PlanDeVaciado>();
    const auto alAvisar = [&tarea, plan, resultado](const Motor::Aviso &aviso) {
        if (aviso.tipo == "copia"_L1)
            plan->copia = copiaDe(aviso);
        if (aviso.tipo != "plan"_L1)
            return void(comun(tarea, aviso));
        plan->archivos = numero(aviso, "a_borrar"_L1);
        plan->bytes = numero(aviso, "bytes"_L1);
        tarea.ponDetalle(u"%1 archivos en el carrete"_s.arg(plan->archivos));
        resultado(*plan);
    };
    tarea.lanzarMotorPublico(orden, u"Mirando el carrete del iPhone"_s, false, alAvisar, cerrarSegun(tarea));
}

void vaciar(Tarea &tarea, const QStringList &orden, const QString &titulo, const Tarea::AlAvisar &alAvisar,
            const Resumen &resumen)
{
    const auto curso = std::make_shared<CursoDeBorrado>();
    const auto mirar = [&tarea, curso, alAvisar](const Motor::Aviso &aviso) {
        curso->mirar(aviso);
        comun(tarea, aviso);
        alAvisar(aviso);
    };
    tarea.lanzarMotorPublico(orden, titulo, true, mirar,
                             [&tarea, curso, resumen](int codigo) { curso->cerrar(tarea, codigo, resumen); });
    tarea.esperaSuFinAlCancelar();
}

} // namespace

void planBorrarTodasLasFotos(Tarea &tarea, const QString &udid, const QString &carpetaCopias,
                             const AlPlanear &resultado)
{
    planear(tarea, {u"borrar-fotos-iphone"_s, udid, carpetaCopias}, resultado);
}

void planBorrarBibliotecaDeFotos(Tarea &tarea, const QString &udid, const QString &carpetaCopias,
                                 const AlPlanear &resultado)
{
    planear(tarea, {u"borrar-biblioteca-fotos"_s, udid, carpetaCopias}, resultado);
}

void borrarTodasLasFotos(Tarea &tarea, const QString &udid, const QString &carpetaCopias)
{
    const auto alAvisar = [&tarea](const Motor::Aviso &aviso) {
        if (aviso.tipo == "progreso"_L1)
            tarea.ponDetalle(u"Borradas %1 de %2"_s.arg(tarea.hechos()).arg(tarea.deTotal()));
        else if (aviso.tipo == "fin"_L1)
            finDeTodas(tarea, aviso);
    };
    vaciar(tarea, {u"borrar-fotos-iphone"_s, udid, carpetaCopias}, u"Vaciando el carrete del iPhone"_s, alAvisar, {});
}

void borrarBibliotecaDeFotos(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const Resumen &resumen)
{
    const auto alAvisar = [&tarea, resumen](const Motor::Aviso &aviso) {
        if (aviso.tipo == "total"_L1)
            tarea.apunta(u"Voy por partes: carrete, miniaturas, ediciones y la lista de la app Fotos."_s);
        else if (aviso.tipo == "progreso"_L1)
            tarea.ponDetalle(u"Borrando %1 · %2 archivos"_s.arg(aviso.texto("fichero"_L1).value_or(QString()),
                                                                QString::number(numero(aviso, "copiados"_L1))));
        else if (aviso.tipo == "fin"_L1)
            finDeLaBiblioteca(tarea, aviso, resumen);
    };
    tarea.muestra();
    vaciar(tarea, {u"borrar-biblioteca-fotos"_s, udid, carpetaCopias}, u"Borrando TODAS las fotos del iPhone"_s,
           alAvisar, resumen);
}

QString preguntaDeVaciar(const PlanDeVaciado &plan)
{
    const auto &copia = plan.copia;
    auto texto =
        u"Se borra la biblioteca de Fotos entera del iPhone: las fotos, los vídeos, las miniaturas, las ediciones "
        "y la lista de la app Fotos.\n\nEsta vez SÍ desaparecen de la pantalla del teléfono. Tendrás que "
        "reiniciar el iPhone al terminar.\n\nTienes copia de seguridad en el Mac, y las fotos se pueden "
        "recuperar con el botón «Recuperar mis fotos». Es la de «%1» del %2 y, recién comprobado, tiene las %3 "
        "fotos y vídeos que hay ahora en el iPhone."_s.arg(
            copia.telefono, Formato::espanol().toString(copia.fecha, u"d 'de' MMMM 'de' yyyy 'a las' H:mm"_s),
            Formato::entero(copia.fotos));
    if (copia.soloICloud > 0)
        texto += u"\n\n⚠️ Otras %1 solo están en iCloud: no están en la copia."_s.arg(
            Formato::entero(copia.soloICloud));
    if (!copia.alQuitarLaLista.isEmpty())
        texto += u"\n\n⚠️ "_s + copia.alQuitarLaLista;
    return texto + u"\n\nEsto no se puede deshacer desde el iPhone."_s;
}

QString avisoDeNoVaciar(const QString &motivo)
{
    return u"No te dejo borrar sin una copia. Podrías perder tus fotos para siempre.\n\n"_s +
           (motivo.isEmpty() ? QString() : motivo + u"\n\n"_s) +
           u"Primero pon tus fotos a salvo: pulsa «Copiar fotos y vídeos» o «Hacer copia de seguridad». Cuando estén a "
           "salvo, se desbloquea el borrado."_s;
}

void recuperarCarrete(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const QString &destino)
{
    if (!QFileInfo::exists(carpetaCopias + u'/' + udid + u"/Manifest.db"_s))
        return tarea.rechazar(u"Recuperar las fotos"_s, u"No hay copia de seguridad"_s,
                              {u"No hay ninguna copia de seguridad de la que sacarlas."_s});
    const auto alAvisar = [&tarea](const Motor::Aviso &aviso) {
        comun(tarea, aviso);
        if (aviso.tipo == "total"_L1)
            tarea.apunta(u"La copia trae %1 fotos y vídeos."_s.arg(numero(aviso, "n"_L1)));
        else if (aviso.tipo == "progreso"_L1)
            tarea.ponDetalle(u"%1 recuperadas"_s.arg(numero(aviso, "copiados"_L1)));
        else if (aviso.tipo == "fin"_L1)
            finDeLaRecuperacion(tarea, aviso);
    };
    tarea.muestra();
    tarea.lanzarMotorPublico({u"recuperar-carrete"_s, udid, carpetaCopias, destino},
                             u"Recuperando las fotos de la copia"_s, false, alAvisar, cerrarSegun(tarea));
    tarea.ponCarpetaResultado(destino);
}

} // namespace vellora
