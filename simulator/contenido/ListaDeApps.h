#pragma once

#include <vector>

namespace simulado
{

/// One app of the phone. All names are invented, but for WhatsApp, whose databases the phone holds.
struct AppInstalada {
    const char *paquete;
    const char *nombre;
    const char *version;
    bool delSistema;
    int megas;            ///< StaticDiskUsage
    int megasDeDatos;     ///< DynamicDiskUsage
    int diasSinRed;       ///< days since it last used the network; -1: the phone has no record of it
    const char *permisos; ///< short names of its usage description keys, joined by blanks
    int rastreadores;     ///< servers it declares that track
    int dibujo;           ///< shape of its icon
    bool comprada;        ///< carries ApplicationSINF and iTunesMetadata
};

const std::vector<AppInstalada> &listaDeApps();

} // namespace simulado
