#pragma once

#include "engine/Avisos.h"
#include "engine/roll/Carrete.h"

#include <functional>

namespace vellora::motor
{

/// Runs a command over the phone of that identifier, or tells why it cannot; the exit status.
int conElTelefono(const QString &udid, Avisos &avisar, const std::function<int(Conexiones &)> &hacer,
                  size_t conexiones = Conexiones::maximo);

/// The same with the roll at hand, what the phone refused to show of it told in the log.
int conElCarrete(const QString &udid, Avisos &avisar, const std::function<int(Conexiones &, const Carrete &)> &hacer);

enum class RutasAdmitidas { LasQueSeBorran, LasQueSeCopian };
/// The paths of the phone in a text file, a line each. Only those of files of the roll are taken, and for a copy those
/// that the phone keeps outside of it; fails when the file cannot be read or there is another one among them.
Resultado<QStringList> leerRutas(const QString &fichero, RutasAdmitidas cuales = RutasAdmitidas::LasQueSeBorran);

struct RutasBuscadas {
    std::vector<FicheroDelCarrete> ficheros;           ///< in the order asked for
    std::vector<std::pair<QString, QString>> perdidos; ///< a path and why it is not among them
    qint64 negados = 0; ///< of those: the phone did not say that they are gone, so they are still there
};
/// What the phone says today of those paths.
RutasBuscadas buscarRutas(Conexiones &conexiones, const QStringList &rutas);

} // namespace vellora::motor
