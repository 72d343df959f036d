#pragma once

#include "engine/roll/BorradoProbado.h"

/// Deletions of what the owner was told that no copy in the folder of photos stands for.
namespace vellora::motor
{

/// Takes the files off the phone one by one, as far as the phone answers and nobody asks to end. One that is no longer
/// the file it was, or that the phone refuses to delete, stays and is told of in the log.
void borrarSinCopia(const std::vector<const FicheroDelCarrete *> &ficheros, Afc &afc, CuentaDeBorrado &cuenta,
                    Avisos &avisar);

/// The notice "progreso" of the deletions: hechos (those that stay too) copiados (gone) fichero.
void contarElCamino(const CuentaDeBorrado &cuenta, const QString &ruta, Avisos &avisar);
/// The notice "plan" of an unconfirmed one: a_borrar (files) bytes. The exit status.
int contarElPlan(const std::vector<FicheroDelCarrete> &ficheros, Avisos &avisar);

} // namespace vellora::motor
