#include "app/cli/TrabajoSinVentana.h"

#include "app/cli/Consola.h"
#include "backups/Catalogo.h"
#include "backups/ExplicarFallo.h"
#include "platform/Procesos.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace vellora
{

TrabajoSinVentana::TrabajoSinVentana(const OpcionesDeOrden &pedidas, Trabajo suTrabajo)
    : opciones(pedidas), trabajo(std::move(suTrabajo))
{
    connect(&modelo, &Modelo::refrescado, this, &TrabajoSinVentana::elegir);
    connect(&modelo.tarea(), &Tarea::cambio, this, &TrabajoSinVentana::pintarAvance);
    connect(&cancelacion, &Cancelacion::pedida, this, &TrabajoSinVentana::cancelar);
}

/// The phone asked for or the one that is there; where a backup is enough, also one that is not connected.
std::optional<QString> TrabajoSinVentana::elegido()
{
    if (opciones.udid)
        modelo.seleccionar(*opciones.udid);
    const auto &conectado = modelo.seleccionado();
    if (conectado && conectado->id == opciones.udid.value_or(conectado->id)) {
        Consola::palabras(trabajo.titulo.arg(conectado->nombre));
        return conectado->id;
    }
    auto cual = opciones.udid ? opciones.udid : Catalogo::udidDeLaCopia(modelo.carpetaCopias());
    if (trabajo.sinTelefono && cual) {
        Consola::palabras(trabajo.titulo.arg(*cual));
        return cual;
    }
    Consola::palabras(opciones.udid ? u"No veo ese iPhone: "_s + *opciones.udid : u"No veo ningún iPhone"_s);
    return {};
}

void TrabajoSinVentana::elegir()
{
    modelo.disconnect(this); // the first answer is the one that counts
    const auto cual = elegido();
    if (!cual)
        return QCoreApplication::exit(SalidaMal);
    udid = *cual;
    trabajo.empezar(modelo, udid);
    for (const auto &linea : modelo.tarea().registro())
        Consola::palabras(linea);
    // Refused, or over before it could begin.
    if (!modelo.tarea().enMarcha())
        return terminar(false);
    connect(&modelo.tarea(), &Tarea::acabada, this, &TrabajoSinVentana::terminar);
    connect(&modelo.tarea(), &Tarea::registroCambio, this, &TrabajoSinVentana::contar);
}

void TrabajoSinVentana::contar()
{
    const auto &registro = modelo.tarea().registro();
    // The bars of single batches are for the log; here the overall progress is painted.
    if (!registro.isEmpty() && !porcentajeEn(registro.last()))
        Consola::palabras(registro.last());
}

void TrabajoSinVentana::pintarAvance()
{
    const auto &tarea = modelo.tarea();
    if (!tarea.enMarcha())
        return;
    const auto quedan = tarea.tiempoRestante();
    Consola::avance(tarea.detalle() + (quedan ? u" · quedan "_s + *quedan : QString()));
}

void TrabajoSinVentana::cancelar()
{
    if (modelo.tarea().enMarcha())
        modelo.tarea().cancelar();
    else
        QCoreApplication::exit(SalidaMal);
}

void TrabajoSinVentana::terminar(bool bien)
{
    const auto &tarea = modelo.tarea();
    const auto carpeta = trabajo.resultado ? trabajo.resultado(modelo, udid) : QString();
    Consola::palabras(tarea.detalle());
    if (trabajo.decir && bien) {
        trabajo.decir();
    } else if (opciones.json) {
        const QJsonObject objeto{{u"bien"_s, bien},
                                 {u"udid"_s, udid},
                                 {u"carpeta"_s, carpeta},
                                 {u"detalle"_s, tarea.detalle()},
                                 {u"registro"_s, QJsonArray::fromStringList(tarea.registro())}};
        Consola::resultado(QJsonDocument(objeto));
    } else if (bien && !carpeta.isEmpty()) {
        Consola::resultado(carpeta);
    }
    salirCuandoNoQuedeNadie(bien ? SalidaBien : SalidaMal);
}

/// A cancelled tool is given its time to end in order.
void TrabajoSinVentana::salirCuandoNoQuedeNadie(int codigo)
{
    if (!modelo.tarea().ejecutor.enMarcha() && !modelo.tarea().ejecutorMotor.enMarcha())
        return QCoreApplication::exit(codigo);
    QTimer::singleShot(50, this, [this, codigo] { salirCuandoNoQuedeNadie(codigo); });
}

int hacerSinVentana(const OpcionesDeOrden &opciones, TrabajoSinVentana::Trabajo trabajo, const QString &siEstaAbierta)
{
    if (!trabajo.sinTelefono && !Consola::hayHerramientas())
        return SalidaFaltaHerramienta;
    // A second writer of the journal would close the entry of the job that runs in the window.
    if (hayOtroProcesoDelPrograma()) {
        Consola::palabras(siEstaAbierta);
        return SalidaMal;
    }
    const TrabajoSinVentana enCurso(opciones, std::move(trabajo));
    return QCoreApplication::exec();
}

} // namespace vellora
