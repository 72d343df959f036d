#include "app/cli/Consola.h"
#include "app/cli/TrabajoSinVentana.h"
#include "backups/CopiaSemanal.h"
#include "backups/Copias.h"
#include "core/Ejecutor.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

void avisarEnPantalla(const QString &texto)
{
    const auto programa = QStandardPaths::findExecutable(u"notify-send"_s);
    if (!programa.isEmpty())
        Ejecutor::rapido(programa, {u"Vellora"_s, texto}, 10);
}

void salirSinHijos(const CopiaSemanal &copia, int fin)
{
    if (!copia.quedanHijos())
        return QCoreApplication::exit(fin);
    QTimer::singleShot(50, &copia, [&copia, fin] { salirSinHijos(copia, fin); });
}

/// The system's own timer asks for it; nobody is there to read along.
int copiaSemanal(const QString &udid, const QString &copias)
{
    if (!Consola::hayHerramientas())
        return SalidaFaltaHerramienta;
    CopiaSemanal copia(udid, copias, &Consola::palabras, &avisarEnPantalla);
    if (!copia.toca(QDateTime::currentDateTime()))
        return SalidaBien;
    Cancelacion cancelacion;
    QObject::connect(&cancelacion, &Cancelacion::pedida, &copia, &CopiaSemanal::cancelar);
    QObject::connect(&copia, &CopiaSemanal::acabada, &copia, [&copia](int fin) { salirSinHijos(copia, fin); });
    QTimer::singleShot(0, &copia, &CopiaSemanal::empezar);
    return QCoreApplication::exec();
}

} // namespace

int ordenCopia(const OpcionesDeOrden &opciones)
{
    if (opciones.automatica)
        return copiaSemanal(opciones.udid.value_or(QString()), opciones.carpeta.value_or(QString()));
    const auto empezar = [&opciones](Modelo &modelo, const QString &) {
        // Nobody is asked for a password here; switching on the encryption is another command.
        Copias(modelo, {}).hacerCopia(opciones.sinCifrar);
    };
    const auto resultado = [](Modelo &modelo, const QString &udid) {
        return QString(modelo.carpetaCopias() + u'/' + udid);
    };
    return hacerSinVentana(opciones, {u"Copia de seguridad de %1"_s, false, empezar, resultado},
                           u"Vellora ya está abierta. Haz la copia desde su ventana, o ciérrala."_s);
}

} // namespace vellora
