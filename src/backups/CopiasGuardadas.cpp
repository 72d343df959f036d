#include "backups/CopiasGuardadas.h"

#include "backups/CarpetaDeCopias.h"
#include "backups/Catalogo.h"
#include "core/Formato.h"
#include "core/SegundoPlano.h"
#include "core/Tarea.h"
#include "session/Consentimiento.h"
#include "session/Modelo.h"

#include <QLocale>
#include <QVariantMap>

#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

QString cuando(const QDateTime &fecha)
{
    return QLocale(QLocale::Spanish).toString(fecha.toLocalTime(), u"d 'de' MMMM 'de' yyyy, HH:mm"_s);
}

} // namespace

CopiasGuardadas::CopiasGuardadas(Modelo &elModelo, Consentimiento &elConsentimiento, QObject *padre)
    : QObject(padre), modelo(elModelo), consentimiento(elConsentimiento)
{
    // Counting walks over every file: only once it was asked for, and when what it counts is another's or changed.
    connect(&modelo.tarea(), &Tarea::acabada, this, [this] {
        if (vez > 0)
            mirar();
    });
    connect(&modelo, &Modelo::cambioDeSesion, this, [this] {
        if (vez > 0 && deQuien != clave())
            mirar();
    });
}

int CopiasGuardadas::cuantas()
{
    return CopiasAnteriores::cuantas();
}

void CopiasGuardadas::ponCuantas(int cuantas)
{
    CopiasAnteriores::ponCuantas(cuantas);
    emit cambio();
}

QString CopiasGuardadas::clave() const
{
    const auto &elegido = modelo.seleccionado();
    return elegido ? modelo.carpetaCopias() + u'/' + elegido->id : QString();
}

void CopiasGuardadas::mirar()
{
    const int esta = ++vez;
    deQuien = clave();
    const auto &elegido = modelo.seleccionado();
    if (!elegido) {
        anteriores.clear();
        bytesEntreTodas = 0;
        emit cambio();
        return;
    }
    const auto contar = [copias = modelo.carpetaCopias(), udid = elegido->id] {
        const auto lista = CopiasAnteriores::listar(copias, udid, true);
        QStringList carpetas{copias + u'/' + udid};
        for (const auto &una : lista)
            carpetas << una.carpeta();
        return std::pair(lista, lista.isEmpty() ? 0 : CarpetaDeCopias::bytesEnDisco(carpetas));
    };
    enSegundoPlano(this, contar, [this, esta](const std::pair<QList<CopiasAnteriores::Anterior>, qint64> &visto) {
        if (esta != vez)
            return;
        std::tie(anteriores, bytesEntreTodas) = visto;
        emit cambio();
    });
}

QVariantList CopiasGuardadas::filas() const
{
    QVariantList lista;
    for (const auto &una : anteriores) {
        const auto estado = una.entera ? u"comprobada"_s : una.acabada ? u"sin comprobar"_s : u"a medias"_s;
        lista << QVariantMap{{u"titulo"_s, cuando(una.fecha)},
                             {u"detalle"_s, u"%1 · quitarla libera %2"_s.arg(estado, Formato::tamano(una.bytes))}};
    }
    return lista;
}

QString CopiasGuardadas::ocupan() const
{
    return anteriores.isEmpty() ? QString() : u"Con la de ahora ocupan %1."_s.arg(Formato::tamano(bytesEntreTodas));
}

void CopiasGuardadas::ver(int fila)
{
    if (fila >= 0 && fila < anteriores.size())
        modelo.abrirEnFinder(anteriores[fila].carpetaCopias);
}

void CopiasGuardadas::pedirQuitar(int fila)
{
    const auto &elegido = modelo.seleccionado();
    if (fila < 0 || fila >= anteriores.size() || !elegido)
        return;
    const auto copias = modelo.carpetaCopias();
    const auto cual = anteriores[fila];
    const bool hayOtra = Catalogo::estadoDe(copias + u'/' + elegido->id).clase == Catalogo::Clase::Entera;
    Pregunta pregunta;
    pregunta.titulo = u"¿Quitar esta copia anterior?"_s;
    pregunta.texto = u"La copia del %1 se borra del ordenador para siempre, y quedan libres %2 más."_s.arg(
        cuando(cual.fecha), Formato::tamano(cual.bytes));
    pregunta.texto +=
        hayOtra ? u"\n\nLa copia de ahora, que está comprobada, se queda como está."_s
                : u"\n\n⚠️ La copia de ahora NO está comprobada: puede que esta sea la única que sirva."_s;
    pregunta.aceptar = u"Quitar la copia"_s;
    pregunta.dejar = u"No hacer nada"_s;
    pregunta.motivo = Cerradura::BorrarDelOrdenador;
    pregunta.udid = elegido->id;
    pregunta.porQueYaNo = [copias, udid = elegido->id, hayOtra]() -> std::optional<QString> {
        const bool sigue = Catalogo::estadoDe(copias + u'/' + udid).clase == Catalogo::Clase::Entera;
        return hayOtra && !sigue ? std::optional(u"La copia de ahora ya no está como estaba. No he quitado nada."_s)
                                 : std::nullopt;
    };
    pregunta.hacer = [this, copias, cual] {
        quitar(copias, cual);
    };
    consentimiento.plantear(std::move(pregunta));
}

void CopiasGuardadas::quitar(const QString &copias, const CopiasAnteriores::Anterior &cual)
{
    enSegundoPlano(
        this, [copias, cual] { return CopiasAnteriores::quitar(copias, cual); },
        [this](bool quitada) {
            if (!quitada)
                consentimiento.avisar(
                    u"No he podido quitar del todo esa copia. Puede que otro programa la tenga en uso."_s);
            mirar();
        });
}

} // namespace vellora
