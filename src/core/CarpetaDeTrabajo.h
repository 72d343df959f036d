#pragma once

#include "core/CarpetaDeDestino.h"
#include "core/Resultado.h"

#include <QString>

#include <utility>

namespace vellora
{

/// A private folder for the work of one run, under a name that nobody has had, removed with this object. While it is
/// in use it is locked; the lock dies with the process, so that what a killed program left is told from what another
/// one is working in. Any thread; removal takes as long as there are files in it.
class CarpetaDeTrabajo
{
public:
    /// In the cache folder; with a folder of results on another volume, hidden in that one, so that files can move into
    /// the results without being copied. A volume without permissions is not used.
    static Resultado<CarpetaDeTrabajo> nueva(const QString &resultados = {});
    CarpetaDeTrabajo(CarpetaDeTrabajo &&otra) noexcept
        : ruta_(std::exchange(otra.ruta_, {})), padre(std::move(otra.padre)), cerrojo(std::move(otra.cerrojo))
    {
    }
    CarpetaDeTrabajo &operator=(CarpetaDeTrabajo &&) = delete;
    CarpetaDeTrabajo(const CarpetaDeTrabajo &) = delete;
    CarpetaDeTrabajo &operator=(const CarpetaDeTrabajo &) = delete;
    ~CarpetaDeTrabajo() { quitar(); }

    const QString &ruta() const { return ruta_; }
    QString fichero(const QString &nombre) const { return ruta_ + u'/' + nombre; }
    /// Removes it now. Not while another thread uses this object.
    void quitar();

    /// For a second process that works in the same folder: keeps it from being taken for left over, also when the first
    /// one is gone, as long as the descriptor lives. Invalid when it is being removed or is nobody's working folder.
    static Descriptor entrar(const QString &ruta);

    /// Removes the folders that nobody works in any more: of killed programs, and under the names of older versions.
    static void quitarMuertas(const QString &resultados = {});

private:
    CarpetaDeTrabajo(QString laRuta, Descriptor elPadre, Descriptor elCerrojo)
        : ruta_(std::move(laRuta)), padre(std::move(elPadre)), cerrojo(std::move(elCerrojo))
    {
    }

    QString ruta_; ///< empty once it is gone
    Descriptor padre;
    Descriptor cerrojo;
};

} // namespace vellora
