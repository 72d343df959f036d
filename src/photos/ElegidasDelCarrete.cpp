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

/// What is told of a deletion that left something behind.
QString borradoIncompleto(qint64 borrados, const LoQueSigue &sigue, bool sinLista)
{
    if (borrados == 0)
        return sigue.porQueNada() + u"\n\nDesbloquea el iPhone, cierra la app Fotos y prueba otra vez."_s;
    auto texto = u"He borrado %1 archivos, pero %2 siguen ahí"_s.arg(borrados).arg(sigue.siguen);
    if (sigue.sinMirar > 0)
        texto += u" y he dejado la lista de la app Fotos, porque el iPhone no me ha dejado mirar todas sus carpetas"_s;
    else if (!sinLista)
        texto += u" y no pude tirar la lista de la app Fotos"_s;
    texto += u".\n\nDesbloquea el iPhone, cierra la app Fotos y prueba otra vez."_s;
    if (sigue.sinPrueba > 0)
        texto += u"\n\n%1 se quedan porque su copia en el ordenador ya no está o no se lee igual: cópialas otra vez "
                 "antes de borrarlas."_s.arg(sigue.sinPrueba);
    return texto + u"\n\n👉 REINICIA EL IPHONE para que la app Fotos se ponga al día."_s;
}

void finDeBorrar(Tarea &tarea, const Motor::Aviso &aviso, bool huboError, const Resumen &resumen)
{
    const LoQueSigue sigue(aviso);
    const auto borrados = numero(aviso, "borrados"_L1);
    const auto quedan = numero(aviso, "quedan_en_carrete"_L1);
    const bool sinLista = aviso.datos["lista_borrada"_L1].toBool();
    tarea.apunta(
        sigue.sinMirar > 0
            ? u"Borrados %1 archivos. No sé cuántas fotos quedan: hay carpetas que no he podido mirar."_s.arg(borrados)
            : u"Borrados %1 archivos. Quedan %2 fotos en el carrete."_s.arg(borrados).arg(quedan));
    if (!huboError && sigue.siguen == 0 && sinLista) {
        tarea.ponDetalle(u"Borrado · quedan %1 fotos"_s.arg(quedan));
        return resumen(u"Listo. He borrado lo que marcaste y he tirado la lista de la app Fotos.\n\n"
                       "👉 REINICIA EL IPHONE. Al arrancar, la app Fotos se reconstruye con las %1 fotos que quedan; lo "
                       "borrado no vuelve."_s.arg(quedan));
    }
    tarea.ponDetalle(borrados == 0 ? u"No se ha borrado nada"_s : u"Borrado incompleto"_s);
    resumen(borradoIncompleto(borrados, sigue, sinLista));
}

/// Runs a command over a list of paths, or ends the job when the list cannot be written.
void conLista(Tarea &tarea, const QString &orden, const QString &udid, const QStringList &rutas, const QStringList &mas,
              const QString &titulo, bool confirmado, const Tarea::AlAvisar &alAvisar,
              const Tarea::AlTerminar &alTerminar)
{
    const auto lista = apuntarRutas(rutas);
    if (!lista)
        return tarea.rechazar(titulo, u"No se pudo empezar"_s,
                              {u"No hay sitio ni para apuntar lo que has marcado. Libera espacio en el Mac."_s});
    tarea.muestra();
    tarea.lanzarMotorPublico(QStringList{orden, udid, lista->fichero} + mas, titulo, confirmado, alAvisar,
                             [alTerminar, lista](int codigo) { alTerminar(codigo); });
}

void borrar(Tarea &tarea, const QString &orden, const QString &udid, const ElegidasParaBorrar &elegidas,
            const Resumen &resumen)
{
    const auto titulo = u"Borrando lo que has marcado"_s;
    const auto perdidas = apuntarRutas(elegidas.sinCopiar);
    if (!perdidas)
        return tarea.rechazar(titulo, u"No se pudo empezar"_s,
                              {u"No hay sitio ni para apuntar lo que has marcado. Libera espacio en el Mac."_s});
    const auto huboError = std::make_shared<bool>(false);
    const auto curso = std::make_shared<CursoDeBorrado>();
    const auto alAvisar = [&tarea, resumen, huboError, curso](const Motor::Aviso &aviso) {
        *huboError = *huboError || aviso.tipo == "error"_L1;
        curso->mirar(aviso);
        contarElCamino(tarea, aviso, u" borrados · "_s);
        if (aviso.tipo == "fin"_L1)
            finDeBorrar(tarea, aviso, *huboError, resumen);
    };
    conLista(tarea, orden, udid, elegidas.rutas, {elegidas.carpeta, perdidas->fichero}, titulo, true, alAvisar,
             [&tarea, curso, resumen, perdidas](int codigo) { curso->cerrar(tarea, codigo, resumen); });
    tarea.esperaSuFinAlCancelar();
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

QString preguntaDeBorrarElegidas(qint64 cuantos, qint64 peso, qint64 sinCopiar, const QString &alQuitarLaLista)
{
    auto texto = cuantos == 1 ? u"Se borrará 1 foto del iPhone y recuperarás %1."_s.arg(Formato::tamano(peso))
                              : u"Se borrarán %1 fotos del iPhone y recuperarás %2."_s.arg(Formato::entero(cuantos),
                                                                                           Formato::tamano(peso));
    if (sinCopiar > 0)
        texto += (sinCopiar == 1 ? u"\n\n⚠️ 1 NO está copiada en el Mac: se pierde para siempre."_s
                                 : u"\n\n⚠️ %1 NO están copiadas en el Mac: se pierden para siempre."_s.arg(
                                       Formato::entero(sinCopiar)));
    texto += u"\n\nTambién se tira la lista de la app Fotos, que se rehace sola: al terminar hay que reiniciar el "
             "iPhone."_s;
    return alQuitarLaLista.isEmpty() ? texto : texto + u"\n\n⚠️ "_s + alQuitarLaLista;
}

void listarCarrete(Tarea &tarea, const QString &udid, const QString &carpetaLocal,
                   const std::function<void(const CarreteListado &)> &resultado)
{
    const auto listado = std::make_shared<CarreteListado>();
    const auto sinMirar = std::make_shared<qint64>(0);
    const auto alAvisar = [&tarea, listado, sinMirar](const Motor::Aviso &aviso) {
        if (aviso.tipo == "carrete"_L1) {
            for (const auto &una : aviso.datos["lista"_L1].toArray())
                listado->fotos << FotoDelCarrete::deJson(una.toObject());
            listado->alQuitarLaLista = aviso.texto("al_quitar_lista"_L1).value_or(QString());
            *sinMirar = numero(aviso, "sin_mirar"_L1);
            tarea.ponDetalle(u"%1 archivos en el carrete"_s.arg(listado->fotos.size()) +
                             (*sinMirar > 0 ? u"; hay carpetas que el iPhone no deja mirar"_s : QString()));
        } else if (aviso.tipo == "error"_L1) {
            tarea.apunta(aviso.texto("motivo"_L1).value_or(QString()));
        }
    };
    tarea.lanzarMotorPublico({u"listar-carrete"_s, udid, carpetaLocal}, u"Leyendo el carrete"_s, false, alAvisar,
                             [&tarea, listado, sinMirar, resultado](int codigo) {
                                 const bool leido = codigo == 0 && (*sinMirar == 0 || !listado->fotos.isEmpty());
                                 if (leido)
                                     resultado(*listado);
                                 tarea.cerrar(leido);
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
    conLista(tarea, u"copiar-elegidas"_s, udid, rutas, {destino}, u"Copiando lo que has marcado"_s, false, alAvisar,
             [&tarea](int codigo) { tarea.cerrar(codigo == 0); });
    tarea.ponCarpetaResultado(destino);
}

void borrarElegidasDeVerdad(Tarea &tarea, const QString &udid, const ElegidasParaBorrar &elegidas,
                            const Resumen &resumen)
{
    borrar(tarea, u"borrar-elegidas-de-verdad"_s, udid, elegidas, resumen);
}

void borrarElegidas(Tarea &tarea, const QString &udid, const ElegidasParaBorrar &elegidas, const Resumen &resumen)
{
    borrar(tarea, u"borrar-elegidas"_s, udid, elegidas, resumen);
}

} // namespace vellora
