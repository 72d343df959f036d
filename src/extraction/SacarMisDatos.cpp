#include "extraction/SacarMisDatos.h"

#include "core/CarpetaDeTrabajo.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "extraction/Conversacion.h"
#include "extraction/Extraccion.h"
#include "platform/Llavero.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>

#include <memory>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto titulo = u"Sacando tus datos de la copia"_s;

void contar(Tarea &tarea, const QStringList &resumen, bool cifrada)
{
    if (resumen.isEmpty()) {
        tarea.apunta(u"La copia no traía nada de esto dentro."_s);
        tarea.ponDetalle(u"No encontré datos que sacar"_s);
        return tarea.cerrar(false);
    }
    for (const auto &linea : resumen)
        tarea.apunta(linea);
    if (!cifrada) {
        tarea.apunta(QString());
        tarea.apunta(u"Lo que NO sale porque la copia no está cifrada: el historial de llamadas, Safari, los datos de "
                     "Salud y las contraseñas del Llavero. iOS solo los incluye si la copia va cifrada."_s);
    }
    tarea.ponDetalle(u"%1 tipos de datos guardados"_s.arg(resumen.size()));
    tarea.cerrar(true);
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

/// The second half, once everything is unpacked.
void leer(Tarea &tarea, const Desempaquetada &desempaquetada, const QString &destino, bool cifrada)
{
    tarea.ponDetalle(u"Leyendo mensajes, WhatsApp, contactos…"_s);
    tarea.ponAvance(tarea.hechos(), 0);
    const auto trabajo = [desempaquetada, destino] {
        auto resumen = Extraccion::todo(desempaquetada->ruta(), destino);
        if (const auto pagina = Extraccion::chatsEnPagina(destino))
            resumen << *pagina;
        desempaquetada->quitar();
        return resumen;
    };
    enSegundoPlano(&tarea, trabajo, [&tarea, cifrada, numero = tarea.trabajo()](const QStringList &resumen) {
        if (tarea.sigue(numero))
            contar(tarea, resumen, cifrada);
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
    const bool cifrada = Llavero::hayClave(udid);
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
