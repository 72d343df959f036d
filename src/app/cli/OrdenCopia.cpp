#include "app/cli/Cancelacion.h"
#include "app/cli/Consola.h"
#include "app/cli/Ordenes.h"
#include "backups/Copias.h"
#include "backups/ExplicarFallo.h"
#include "platform/Procesos.h"
#include "session/Modelo.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// From the first refresh to the end of the backup.
class CopiaSinVentana : public QObject
{
public:
    explicit CopiaSinVentana(const OpcionesDeOrden &pedidas)
        : opciones(pedidas), copias(modelo, [](const QString &) { return std::nullopt; })
    {
        connect(&modelo, &Modelo::refrescado, this, &CopiaSinVentana::elegir);
        connect(&modelo.tarea(), &Tarea::cambio, this, &CopiaSinVentana::pintarAvance);
        connect(&modelo.tarea(), &Tarea::acabada, this, &CopiaSinVentana::terminar);
        connect(&cancelacion, &Cancelacion::pedida, this, &CopiaSinVentana::cancelar);
    }

private:
    void elegir()
    {
        modelo.disconnect(this); // the first answer is the one that counts
        if (opciones.udid)
            modelo.seleccionar(*opciones.udid);
        const auto &elegido = modelo.seleccionado();
        if (!elegido || (opciones.udid && elegido->id != *opciones.udid)) {
            Consola::palabras(opciones.udid ? u"No veo ese iPhone: "_s + *opciones.udid : u"No veo ningún iPhone"_s);
            return QCoreApplication::exit(SalidaMal);
        }
        udid = elegido->id;
        Consola::palabras(u"Copia de seguridad de %1"_s.arg(elegido->nombre));
        copias.pedirCopia();
        for (const auto &linea : modelo.tarea().registro())
            Consola::palabras(linea);
        if (!modelo.tarea().enMarcha())
            return terminar(false);
        connect(&modelo.tarea(), &Tarea::registroCambio, this, &CopiaSinVentana::contar);
    }

    void contar()
    {
        const auto &registro = modelo.tarea().registro();
        // The bars of single batches are for the log; here the overall progress is painted.
        if (!registro.isEmpty() && !porcentajeEn(registro.last()))
            Consola::palabras(registro.last());
    }

    void pintarAvance()
    {
        const auto &tarea = modelo.tarea();
        if (!tarea.enMarcha())
            return;
        const auto quedan = tarea.tiempoRestante();
        Consola::avance(tarea.detalle() + (quedan ? u" · quedan "_s + *quedan : QString()));
    }

    void cancelar()
    {
        if (modelo.tarea().enMarcha())
            modelo.tarea().cancelar();
        else
            QCoreApplication::exit(SalidaMal);
    }

    void terminar(bool bien)
    {
        const auto &tarea = modelo.tarea();
        const auto carpeta = modelo.carpetaCopias() + u'/' + udid;
        Consola::palabras(tarea.detalle());
        if (opciones.json) {
            const QJsonObject objeto{{u"bien"_s, bien},
                                     {u"udid"_s, udid},
                                     {u"carpeta"_s, carpeta},
                                     {u"detalle"_s, tarea.detalle()},
                                     {u"registro"_s, QJsonArray::fromStringList(tarea.registro())}};
            Consola::resultado(QJsonDocument(objeto));
        } else if (bien) {
            Consola::resultado(carpeta);
        }
        salirCuandoNoQuedeNadie(bien ? SalidaBien : SalidaMal);
    }

    /// A cancelled tool is given its time to end in order.
    void salirCuandoNoQuedeNadie(int codigo)
    {
        if (!modelo.tarea().ejecutor.enMarcha())
            return QCoreApplication::exit(codigo);
        QTimer::singleShot(50, this, [this, codigo] { salirCuandoNoQuedeNadie(codigo); });
    }

    OpcionesDeOrden opciones;
    Modelo modelo;
    Copias copias;
    Cancelacion cancelacion;
    QString udid;
};

} // namespace

int ordenCopia(const OpcionesDeOrden &opciones)
{
    if (!Consola::hayHerramientas())
        return SalidaFaltaHerramienta;
    // One journal, one writer: a second one would close the entry of the job that runs in the window.
    if (hayOtroProcesoDelPrograma()) {
        Consola::palabras(u"Vellora ya está abierta. Haz la copia desde su ventana, o ciérrala."_s);
        return SalidaMal;
    }
    const CopiaSinVentana copia(opciones);
    return QCoreApplication::exec();
}

} // namespace vellora
