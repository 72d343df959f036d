#pragma once

#include <QString>

#include <optional>

namespace vellora
{

/// What a command ends with.
enum Salida { SalidaBien = 0, SalidaMal = 1, SalidaMalUso = 2, SalidaFaltaHerramienta = 3 };

struct OpcionesDeOrden {
    bool json = false;
    bool sinCifrar = false; ///< a backup may be made without encryption
    std::optional<QString> udid;
    std::optional<QString> carpeta; ///< where the result goes
    bool automatica = false;        ///< the weekly backup, with `udid` and `carpeta`
    QString palabra;                ///< what is looked for, or is to be done
};

/// The program without a window: the same operations as subcommands. Results go to standard output, words to standard
/// error. Returns the exit status.
int ejecutarOrden(int argc, char **argv);

int ordenDispositivos(const OpcionesDeOrden &opciones);
int ordenBuscar(const OpcionesDeOrden &opciones);
int ordenCopia(const OpcionesDeOrden &opciones);
int ordenCifrar(const OpcionesDeOrden &opciones);
int ordenDatos(const OpcionesDeOrden &opciones);
int ordenFotos(const OpcionesDeOrden &opciones);
int ordenDiario(const OpcionesDeOrden &opciones);

} // namespace vellora
