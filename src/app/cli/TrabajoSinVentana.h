#pragma once

#include "app/cli/Cancelacion.h"
#include "app/cli/Ordenes.h"
#include "session/Modelo.h"

#include <QObject>
#include <QString>

#include <functional>

namespace vellora
{

/// One job without a window: from the first refresh to its end, its steps told on standard error, its result on
/// standard output. Ends the event loop. Main thread only.
class TrabajoSinVentana : public QObject
{
public:
    /// `empezar` starts the job on that phone or backup; without a job running after it, the log it left is told and
    /// the command ends badly. `resultado` is the folder to tell of once all went well; `decir`, where there is one,
    /// tells the result in its place.
    struct Trabajo {
        QString titulo;           ///< "Copia de seguridad de %1"
        bool sinTelefono = false; ///< a backup of the phone is enough
        std::function<void(Modelo &, const QString &)> empezar;
        std::function<QString(Modelo &, const QString &)> resultado;
        std::function<void()> decir = {};
    };

    TrabajoSinVentana(const OpcionesDeOrden &pedidas, Trabajo suTrabajo);

private:
    void elegir();
    std::optional<QString> elegido();
    void contar();
    void pintarAvance();
    void cancelar();
    void terminar(bool bien);
    void salirCuandoNoQuedeNadie(int codigo);

    OpcionesDeOrden opciones;
    Trabajo trabajo;
    Modelo modelo;
    Cancelacion cancelacion;
    QString udid;
};

/// Runs it. Refuses while another program of ours works: one journal, one writer.
int hacerSinVentana(const OpcionesDeOrden &opciones, TrabajoSinVentana::Trabajo trabajo, const QString &siEstaAbierta);

} // namespace vellora
