#include "photos/ElegidasDelCarrete.h"

#include "core/Formato.h"
#include "core/Tarea.h"

#include <QJsonArray>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

qint64 numero(const Motor::Aviso &aviso, QLatin1StringView clave)
{
    return aviso.entero(clave).value_or(0);
}

void contarElCamino(Tarea &tarea, const Motor::Aviso &aviso, const QString &hecho)
{
    if (aviso.tipo == "total"_L1) {
        tarea.ponAvance(tarea.hechos(), numero(aviso, "n"_L1));
        tarea.ponInicio(QDateTime::currentDateTimeUtc());
    } else if (aviso.tipo == "progreso"_L1) {
        tarea.ponAvance(numero(aviso, "hechos"_L1), tarea.deTotal());
        tarea.ponDetalle(QString::number(numero(aviso, "copiados"_L1)) + hecho +
                         aviso.texto("fichero"_L1).value_or(QString()));
    } else if (aviso.tipo == "error"_L1) {
        tarea.apunta(aviso.texto("motivo"_L1).value_or(QString()));
    }
}

void finDeBorrar(Tarea &tarea, const Motor::Aviso &aviso, bool huboError, const Resumen &resumen)
{
    const auto borrados = numero(aviso, "borrados"_L1);
    const auto siguen = numero(aviso, "siguen_ahi"_L1);
    const auto quedan = numero(aviso, "quedan_en_carrete"_L1);
    const bool sinLista = aviso.datos["lista_borrada"_L1].toBool();
    tarea.apunta(u"Borrados %1 archivos. Quedan %2 fotos en el carrete."_s.arg(borrados).arg(quedan));
    if (!huboError && siguen == 0 && sinLista) {
        tarea.ponDetalle(u"Borrado · quedan %1 fotos"_s.arg(quedan));
        return resumen(u"Listo. He borrado lo que marcaste y he tirado la lista de la app Fotos.\n\n"
                       "👉 REINICIA EL IPHONE. Al arrancar, la app Fotos se reconstruye con las %1 fotos que quedan; lo "
                       "borrado no vuelve."_s.arg(quedan));
    }
    tarea.ponDetalle(u"Borrado incompleto"_s);
    resumen(u"He borrado %1 archivos, pero %2 siguen ahí"_s.arg(borrados).arg(siguen) +
            (sinLista ? QString() : u" y no pude tirar la lista de la app Fotos"_s) +
            u".\n\nDesbloquea el iPhone, cierra la app Fotos y prueba otra vez."_s);
}

/// Runs a command over a list of paths, or ends the job when the list cannot be written.
void conLista(Tarea &tarea, const QString &orden, const QString &udid, const QStringList &rutas, const QStringList &mas,
              const QString &titulo, bool confirmado, const Tarea::AlAvisar &alAvisar)
{
    const auto lista = apuntarRutas(rutas);
    if (!lista)
        return tarea.rechazar(titulo, u"No se pudo empezar"_s,
                              {u"No hay sitio ni para apuntar lo que has marcado. Libera espacio en el Mac."_s});
    tarea.muestra();
    tarea.lanzarMotorPublico(QStringList{orden, udid, lista->fichero} + mas, titulo, confirmado, alAvisar,
                             [&tarea, lista](int codigo) { tarea.cerrar(codigo == 0); });
}

void borrar(Tarea &tarea, const QString &orden, const QString &udid, const QStringList &rutas, const Resumen &resumen)
{
    const auto huboError = std::make_shared<bool>(false);
    const auto alAvisar = [&tarea, resumen, huboError](const Motor::Aviso &aviso) {
        *huboError = *huboError || aviso.tipo == "error"_L1;
        contarElCamino(tarea, aviso, u" borrados · "_s);
        if (aviso.tipo == "fin"_L1)
            finDeBorrar(tarea, aviso, *huboError, resumen);
    };
    conLista(tarea, orden, udid, rutas, {}, u"Borrando lo que has marcado"_s, true, alAvisar);
}

} // namespace

std::shared_ptr<const ListaDeRutas> apuntarRutas(const QStringList &rutas)
{
    auto carpeta = CarpetaDeTrabajo::nueva();
    if (!carpeta)
        return {};
    QSaveFile lista(carpeta->fichero(u"vellora-elegidas.txt"_s));
    if (!lista.open(QIODevice::WriteOnly))
        return {};
    lista.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    for (const auto &ruta : rutas)
        lista.write(ruta.toUtf8() + '\n');
    if (!lista.commit())
        return {};
    return std::make_shared<const ListaDeRutas>(ListaDeRutas{*std::move(carpeta), lista.fileName()});
}

QString preguntaDeBorrarElegidas(qint64 cuantos, qint64 peso, qint64 sinCopiar)
{
    auto texto = cuantos == 1 ? u"Se borrará 1 foto del iPhone y recuperarás %1."_s.arg(Formato::tamano(peso))
                              : u"Se borrarán %1 fotos del iPhone y recuperarás %2."_s.arg(Formato::entero(cuantos),
                                                                                           Formato::tamano(peso));
    if (sinCopiar > 0)
        texto += (sinCopiar == 1 ? u"\n\n⚠️ 1 NO está copiada en el Mac: se pierde para siempre."_s
                                 : u"\n\n⚠️ %1 NO están copiadas en el Mac: se pierden para siempre."_s.arg(
                                       Formato::entero(sinCopiar)));
    return texto +
           u"\n\nTambién se tira la lista de la app Fotos, que se rehace sola: al terminar hay que reiniciar el "
           "iPhone."_s;
}

void listarCarrete(Tarea &tarea, const QString &udid, const QString &carpetaLocal,
                   const std::function<void(const QList<FotoDelCarrete> &)> &resultado)
{
    const auto fotos = std::make_shared<QList<FotoDelCarrete>>();
    const auto alAvisar = [&tarea, fotos](const Motor::Aviso &aviso) {
        if (aviso.tipo == "carrete"_L1) {
            for (const auto &una : aviso.datos["lista"_L1].toArray())
                *fotos << FotoDelCarrete::deJson(una.toObject());
            tarea.ponDetalle(u"%1 archivos en el carrete"_s.arg(fotos->size()));
        } else if (aviso.tipo == "error"_L1) {
            tarea.apunta(aviso.texto("motivo"_L1).value_or(QString()));
        }
    };
    tarea.lanzarMotorPublico({u"listar-carrete"_s, udid, carpetaLocal}, u"Leyendo el carrete"_s, false, alAvisar,
                             [&tarea, fotos, resultado](int codigo) {
                                 if (codigo == 0)
                                     resultado(*fotos);
                                 tarea.cerrar(codigo == 0);
                             });
}

void copiarElegidas(Tarea &tarea, const QString &udid, const QStringList &rutas, const QString &destino)
{
    const auto alAvisar = [&tarea](const Motor::Aviso &aviso) {
        contarElCamino(tarea, aviso, u" copiadas · "_s);
        if (aviso.tipo != "fin"_L1)
            return;
        const auto copiados = numero(aviso, "copiados"_L1);
        tarea.ponDetalle(u"%1 archivos copiados"_s.arg(copiados));
        tarea.apunta(u"Copiados %1 archivos al Mac."_s.arg(copiados));
    };
    conLista(tarea, u"copiar-elegidas"_s, udid, rutas, {destino}, u"Copiando lo que has marcado"_s, false, alAvisar);
    tarea.ponCarpetaResultado(destino);
}

void borrarElegidasDeVerdad(Tarea &tarea, const QString &udid, const QStringList &rutas, const Resumen &resumen)
{
    borrar(tarea, u"borrar-elegidas-de-verdad"_s, udid, rutas, resumen);
}

void borrarElegidas(Tarea &tarea, const QString &udid, const QStringList &rutas, const Resumen &resumen)
{
    borrar(tarea, u"borrar-elegidas"_s, udid, rutas, resumen);
}

} // namespace vellora
