#include "extraction/SacarMisDatos.h"

#include "core/CarpetaDeTrabajo.h"
#include "core/Plist.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "core/Vuelta.h"
#include "extraction/Conversacion.h"
#include "extraction/Extraccion.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>

#include <array>
#include <memory>
#include <mutex>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto titulo = u"Sacando tus datos de la copia"_s;

/// What came of the reading.
struct Leido {
    QStringList resumen;
    Vuelta::Incidencias mal;
};

/// What the owner calls what is in a database.
QString enPalabras(const QString &base)
{
    struct Nombre {
        const char16_t *fichero;
        const char16_t *nombre;
    };
    static constexpr std::array nombres{Nombre{u"sms.db", u"los mensajes"},
                                        Nombre{u"ChatStorage.sqlite", u"WhatsApp"},
                                        Nombre{u"AddressBook.sqlitedb", u"los contactos"},
                                        Nombre{u"CallHistory.storedata", u"las llamadas"},
                                        Nombre{u"NoteStore.sqlite", u"las notas"},
                                        Nombre{u"Calendar.sqlitedb", u"el calendario"},
                                        Nombre{u"History.db", u"el historial de Safari"},
                                        Nombre{u"Bookmarks.db", u"los marcadores de Safari"},
                                        Nombre{u"healthdb_secure.sqlite", u"la salud"},
                                        Nombre{u"voicemail.db", u"el buzón de voz"}};
    for (const auto &uno : nombres) {
        if (base == QStringView(uno.fichero))
            return QString::fromUtf16(uno.nombre);
    }
    return base;
}

/// Tells of what is there and could not be read or written, so that it is not taken for what is not there.
void contarLoMalo(Tarea &tarea, const Vuelta::Incidencias &mal)
{
    constexpr qsizetype maximo = 20;
    for (const auto &base : mal.danadas)
        tarea.apunta(u"En la copia está dañado: %1. He guardado lo que se deja leer, sin quitar nada de lo que ya "
                     "tenías. Haz una copia nueva y vuelve a sacarlo."_s.arg(enPalabras(base)));
    for (const auto &fichero : mal.sinEscribir.first(std::min(maximo, mal.sinEscribir.size())))
        tarea.apunta(u"No se pudo guardar: %1"_s.arg(fichero));
    if (mal.sinEscribir.size() > maximo)
        tarea.apunta(u"… y otros %1 archivos."_s.arg(mal.sinEscribir.size() - maximo));
    if (!mal.sinEscribir.isEmpty())
        tarea.apunta(u"Lo que tenías guardado de antes sigue igual. Comprueba que queda sitio en el disco y vuelve a "
                     "sacarlos."_s);
}

QString detalleDe(const Leido &leido)
{
    if (leido.resumen.isEmpty())
        return !leido.mal.sinEscribir.isEmpty() ? u"No se pudieron guardar tus datos"_s
               : !leido.mal.danadas.isEmpty()   ? u"Los datos de la copia están dañados"_s
                                                : u"No encontré datos que sacar"_s;
    const auto guardados = u"%1 tipos de datos guardados"_s.arg(leido.resumen.size());
    return !leido.mal.sinEscribir.isEmpty() ? guardados + u"; algo no se pudo guardar"_s
           : !leido.mal.danadas.isEmpty()   ? guardados + u"; algo está dañado en la copia"_s
                                            : guardados;
}

void contar(Tarea &tarea, const Leido &leido, bool cifrada)
{
    const bool todoBien = leido.mal.danadas.isEmpty() && leido.mal.sinEscribir.isEmpty();
    if (leido.resumen.isEmpty() && todoBien)
        tarea.apunta(u"La copia no traía nada de esto dentro."_s);
    for (const auto &linea : leido.resumen)
        tarea.apunta(linea);
    contarLoMalo(tarea, leido.mal);
    if (!leido.resumen.isEmpty() && !cifrada) {
        tarea.apunta(QString());
        tarea.apunta(u"Lo que NO sale porque la copia no está cifrada: el historial de llamadas, Safari, los datos de "
                     "Salud y las contraseñas del Llavero. iOS solo los incluye si la copia va cifrada."_s);
    }
    tarea.ponDetalle(detalleDe(leido));
    tarea.cerrar(todoBien && !leido.resumen.isEmpty());
}

/// The unpacked backup. It goes with the last who knows of it: also after a cancel, once the engine has ended.
using Desempaquetada = std::shared_ptr<CarpetaDeTrabajo>;

/// Gigabytes take a while to go.
void quitarAparte(CarpetaDeTrabajo *carpeta)
{
    std::unique_ptr<CarpetaDeTrabajo> suya(carpeta);
    auto *programa = QCoreApplication::instance();
    if (suya->ruta().isEmpty() || programa == nullptr || QThread::currentThread() != programa->thread())
        return;
    const auto quitar = [suya = std::shared_ptr<CarpetaDeTrabajo>(std::move(suya))] {
        suya->quitar();
        return true;
    };
    enSegundoPlano(programa, quitar, [](bool) {});
}

Leido leerYEscribir(const Desempaquetada &desempaquetada, const QString &destino, Vuelta &vuelta)
{
    // One that was cancelled may still be on its way out of the same folder.
    static std::mutex turno;
    const std::lock_guard cerrojo(turno);
    const Vuelta::EnEsteHilo suya(vuelta);
    const std::stop_callback alAcabarElPrograma(SegundoPlano::delPrograma().parada(), [&vuelta] { vuelta.parar(); });
    Leido leido;
    leido.resumen = Extraccion::todo(desempaquetada->ruta(), destino);
    if (const auto pagina = Vuelta::seguimos() ? Extraccion::chatsEnPagina(destino) : std::nullopt)
        leido.resumen << *pagina;
    desempaquetada->quitar();
    leido.mal = vuelta.incidencias();
    return leido;
}

/// The second half, once everything is unpacked.
void leer(Tarea &tarea, const Desempaquetada &desempaquetada, const QString &destino, bool cifrada)
{
    tarea.ponDetalle(u"Leyendo mensajes, WhatsApp, contactos…"_s);
    tarea.ponAvance(tarea.hechos(), 0);
    const auto vuelta = std::make_shared<Vuelta>();
    // However it ends: what was cancelled writes nothing into what comes after.
    QObject::connect(
        &tarea, &Tarea::acabada, &tarea, [vuelta] { vuelta->parar(); }, Qt::SingleShotConnection);
    const auto trabajo = [desempaquetada, destino, vuelta] {
        return leerYEscribir(desempaquetada, destino, *vuelta);
    };
    enSegundoPlano(&tarea, trabajo, [&tarea, cifrada, numero = tarea.trabajo()](const Leido &leido) {
        if (tarea.sigue(numero))
            contar(tarea, leido, cifrada);
    });
}

void alAvisar(Tarea &tarea, const Motor::Aviso &aviso)
{
    if (aviso.tipo == "total"_L1) {
        const auto cuantos = aviso.entero("n"_L1).value_or(0);
        tarea.ponAvance(tarea.hechos(), cuantos);
        tarea.apunta(u"%1 archivos que sacar de la copia."_s.arg(cuantos));
    } else if (aviso.tipo == "progreso"_L1) {
        tarea.ponAvance(aviso.entero("hechos"_L1).value_or(0), tarea.deTotal());
        tarea.ponDetalle(u"%1 archivos sacados"_s.arg(aviso.entero("copiados"_L1).value_or(0)));
    } else if (aviso.tipo == "error"_L1) {
        tarea.apunta(aviso.texto("motivo"_L1).value_or(QString()));
    }
}

/// True when there is a finished backup; otherwise the job has been closed with its sentence.
bool hayCopia(Tarea &tarea, const QString &copia)
{
    if (QFileInfo::exists(copia + u"/Manifest.db"_s))
        return true;
    if (QFileInfo::exists(copia)) {
        tarea.apunta(u"Hay una copia a medias, sin terminar. Vuelve a hacerla entera con el iPhone desbloqueado."_s);
        tarea.ponDetalle(u"La copia está incompleta"_s);
    } else {
        tarea.apunta(
            u"Todavía no hay ninguna copia de seguridad de este iPhone. Pulsa «Copia de seguridad» primero: tus "
            "mensajes y WhatsApp salen de ahí."_s);
        tarea.ponDetalle(u"Primero hay que hacer la copia"_s);
    }
    tarea.cerrar(false);
    return false;
}

} // namespace

void sacarMisDatos(Tarea &tarea, const QString &udid, const QString &carpetaCopias, const QString &destino)
{
    tarea.empezar(titulo, u"Buscando la última copia…"_s);
    tarea.muestra();
    tarea.ponInicio(QDateTime::currentDateTimeUtc());
    tarea.ponCarpetaResultado(destino);
    if (!hayCopia(tarea, carpetaCopias + u'/' + udid))
        return;
    const auto manifiesto = Plist::leer(carpetaCopias + u'/' + udid + u"/Manifest.plist"_s);
    const bool cifrada = manifiesto && manifiesto->raiz()["IsEncrypted"].logico().value_or(false);
    auto privada = CarpetaDeTrabajo::nueva(destino);
    if (!privada) {
        tarea.apunta(privada.motivo());
        tarea.ponDetalle(u"No se pudo abrir la copia"_s);
        return tarea.cerrar(false);
    }
    const Desempaquetada desempaquetada(new CarpetaDeTrabajo(*std::move(privada)), &quitarAparte);
    tarea.lanzarMotorPublico(
        {u"extraer"_s, udid, carpetaCopias, desempaquetada->ruta()}, titulo, false,
        [&tarea](const Motor::Aviso &aviso) { alAvisar(tarea, aviso); },
        [&tarea, desempaquetada, destino, cifrada](int codigo) {
            if (codigo == 0)
                return leer(tarea, desempaquetada, destino, cifrada);
            tarea.ponDetalle(u"No se pudo abrir la copia"_s);
            tarea.cerrar(false);
        });
}

} // namespace vellora
