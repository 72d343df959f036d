#include "photos/BorrarFotos.h"

#include "core/Formato.h"
#include "core/Tarea.h"

#include <QFileInfo>

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
    tarea.apunta(u"Borrados %1 archivos en total."_s.arg(borrados));
    tarea.apunta(u"Comprobación: quedan %1 fotos en el carrete y %2 miniaturas."_s.arg(fotos).arg(miniaturas));
    tarea.apunta(sinLista ? u"La lista de la app Fotos está borrada."_s
                          : u"No pude borrar la lista de la app Fotos."_s);
    if (fotos == 0 && miniaturas == 0 && sinLista) {
        tarea.ponDetalle(u"Todo borrado · %1 archivos"_s.arg(borrados));
        // The last number is part of the sentence.
        return resumen(u"Listo: %1 archivos borrados. No queda ni una foto, ni una miniatura, ni la lista.\n\n"
                       "👉 REINICIA EL IPHONE AHORA. Al arrancar, la app Fotos se reconstruye vacía.\n\n"
                       "Tus 9.273 fotos siguen a salvo en el Mac."_s.arg(borrados));
    }
    tarea.ponDetalle(u"Borrado incompleto"_s);
    resumen(u"He borrado %1 archivos, pero quedan %2 fotos y %3 miniaturas"_s.arg(borrados).arg(fotos).arg(miniaturas) +
            (sinLista ? QString() : u", y la lista de la app Fotos sigue ahí"_s) +
            u".\n\nSuele ser porque el iPhone está usando esos archivos. Desbloquéalo, cierra la app Fotos y dale otra "
            "vez."_s);
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
    tarea.ponDetalle(u"%1 archivos borrados · %2 libres"_s.arg(borrados).arg(libres));
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

} // namespace

void planBorrarTodasLasFotos(Tarea &tarea, const QString &udid, const std::function<void(qint64, qint64)> &resultado)
{
    const auto alAvisar = [&tarea, resultado](const Motor::Aviso &aviso) {
        if (aviso.tipo != "plan"_L1)
            return void(comun(tarea, aviso));
        const auto archivos = numero(aviso, "a_borrar"_L1);
        tarea.ponDetalle(u"%1 archivos en el carrete"_s.arg(archivos));
        resultado(archivos, numero(aviso, "bytes"_L1));
    };
    tarea.lanzarMotorPublico({u"borrar-fotos-iphone"_s, udid}, u"Mirando el carrete del iPhone"_s, false, alAvisar,
                             cerrarSegun(tarea));
}

void borrarTodasLasFotos(Tarea &tarea, const QString &udid)
{
    const auto alAvisar = [&tarea](const Motor::Aviso &aviso) {
        comun(tarea, aviso);
        if (aviso.tipo == "progreso"_L1)
            tarea.ponDetalle(u"Borradas %1 de %2"_s.arg(tarea.hechos()).arg(tarea.deTotal()));
        else if (aviso.tipo == "fin"_L1)
            finDeTodas(tarea, aviso);
    };
    tarea.lanzarMotorPublico({u"borrar-fotos-iphone"_s, udid}, u"Vaciando el carrete del iPhone"_s, true, alAvisar,
                             cerrarSegun(tarea));
}

void borrarBibliotecaDeFotos(Tarea &tarea, const QString &udid, const Resumen &resumen)
{
    const auto alAvisar = [&tarea, resumen](const Motor::Aviso &aviso) {
        comun(tarea, aviso);
        if (aviso.tipo == "total"_L1)
            tarea.apunta(u"Voy por partes: carrete, miniaturas, ediciones y la lista de la app Fotos."_s);
        else if (aviso.tipo == "progreso"_L1)
            tarea.ponDetalle(u"Borrando %1 · %2 archivos"_s.arg(aviso.texto("fichero"_L1).value_or(QString()),
                                                                QString::number(numero(aviso, "copiados"_L1))));
        else if (aviso.tipo == "fin"_L1)
            finDeLaBiblioteca(tarea, aviso, resumen);
    };
    tarea.muestra();
    tarea.lanzarMotorPublico({u"borrar-biblioteca-fotos"_s, udid}, u"Borrando TODAS las fotos del iPhone"_s, true,
                             alAvisar, cerrarSegun(tarea));
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
