#pragma once

#include "engine/Avisos.h"
#include "engine/backup/Sacador.h"

/// What the commands share that write on the computer, and those that take files out of a backup.
namespace vellora::motor
{

/// Why the disk cannot take so many bytes, with some left free for everything else; absent when it can, or when that
/// cannot be told.
std::optional<QString> faltaDeSitio(qint64 bytes, const CarpetaDeDestino &carpeta);

/// Opens the backup of that phone. `copias`: the folder of the backups or that of one backup. The password of an
/// encrypted one comes from the secret store. `cierre`: as in `CopiaAbierta::abrir`.
Resultado<CopiaAbierta> abrirLaCopia(const QString &udid, const QString &copias, const CarpetaDeDestino &deTrabajo,
                                     Avisos &avisar, CopiaAbierta::Cierre *cierre = nullptr);

/// Takes the files out, telling of them; `cuenta` is what became of it. The exit status, 0 when it went to the end.
int sacarDeLaCopia(const Sacador &sacador, const QString &destino, const Sacador::Avance &avance, Avisos &avisar,
                   Cuenta &cuenta);

} // namespace vellora::motor
