#pragma once

#include "engine/roll/Copiadas.h"
#include "engine/roll/SitioDeCopias.h"

namespace vellora::motor
{

/// The one proof that a photo may leave the phone: at this moment a whole copy of the phone's file stands on a medium of
/// the computer. Whoever deletes what was called copied asks it right before. One thread.
class PruebaDeCopia
{
public:
    /// Fails with a sentence when the folder is no place for copies (see `SitioDeCopias`). `rutas`: every file of the
    /// roll that may go. What was written in the folder a moment ago is put on its disk.
    static Resultado<PruebaDeCopia> abrir(const QString &carpeta, const Copiadas &copiadas, Conexiones &conexiones,
                                          const QStringList &rutas);

    /// The SHA-256 that the phone's file and its copy share. `relativa`: where the copy should stand. Fails with words
    /// that tell why the photo stays, to follow "Dejo en el iPhone X: ". Reads the copy from its medium; the phone's
    /// bytes too where no note of the day of the copy stands for them.
    Resultado<QByteArray> probar(const FicheroDelCarrete &fichero, const QByteArray &relativa);
    /// The same in a folder that is opened anew, for the moment after the first deletion: false when the copy went with
    /// the phone's file, or is no longer what it was.
    bool sigueAhi(const FicheroDelCarrete &fichero, const QByteArray &relativa, const QByteArray &huella) const;

private:
    PruebaDeCopia(const Copiadas &lasCopiadas, Conexiones &lasConexiones, CarpetaDeDestino laCarpeta,
                  SitioDeCopias elSitio)
        : copiadas(&lasCopiadas), conexiones(&lasConexiones), carpeta(std::move(laCarpeta)), sitio(elSitio)
    {
    }
    Resultado<QByteArray> deLaCopia(CarpetaDeDestino &donde, const FicheroDelCarrete &fichero,
                                    const QByteArray &relativa) const;
    Resultado<QByteArray> delTelefono(const FicheroDelCarrete &fichero);

    const Copiadas *copiadas;
    Conexiones *conexiones;
    CarpetaDeDestino carpeta;
    SitioDeCopias sitio;
};

} // namespace vellora::motor
