#pragma once

#include "engine/roll/Copiadas.h"
#include "engine/roll/SitioDeCopias.h"

namespace vellora::motor
{

/// The one proof that a photo may leave the phone: at this moment a whole copy of the phone's file stands on a medium
/// of the computer. Whoever deletes what was called copied asks it right before. One thread.
class PruebaDeCopia
{
public:
    /// Fails with a sentence when the folder is no place for copies (see `SitioDeCopias`). `rutas`: every file of the
    /// roll that may go. What was written in the folder a moment ago is put on its disk.
    static Resultado<PruebaDeCopia> abrir(const QString &carpeta, Copiadas &copiadas, Conexiones &conexiones,
                                          const QStringList &rutas);

    struct Copia {
        QByteArray relativa; ///< where it stands in the folder
        QByteArray huella;   ///< SHA-256, the phone's and its own
    };
    /// The copy of the phone's file, as its medium holds it at this moment. Of several that could be it, content
    /// decides. Fails with words that tell why the photo stays, to follow "Dejo en el iPhone X: ". Reads the phone's
    /// bytes too where no note of this day stands for them. A note that its copy gives the lie to is taken back.
    Resultado<Copia> probar(const FicheroDelCarrete &fichero);
    /// Proves it once more in the folder opened anew, for the moment after the first deletion: false when the copy went
    /// with the phone's file, or is no longer what it was.
    bool sigueAhi(const FicheroDelCarrete &fichero, const Copia &copia) const;

private:
    PruebaDeCopia(Copiadas &lasCopiadas, Conexiones &lasConexiones, CarpetaDeDestino laCarpeta, SitioDeCopias elSitio)
        : copiadas(&lasCopiadas), conexiones(&lasConexiones), carpeta(std::move(laCarpeta)), sitio(elSitio)
    {
    }
    Resultado<QByteArray> deLaCopia(CarpetaDeDestino &donde, const FicheroDelCarrete &fichero,
                                    const QByteArray &relativa) const;
    Resultado<QByteArray> delTelefono(const FicheroDelCarrete &fichero);

    Copiadas *copiadas;
    Conexiones *conexiones;
    CarpetaDeDestino carpeta;
    SitioDeCopias sitio;
};

} // namespace vellora::motor
