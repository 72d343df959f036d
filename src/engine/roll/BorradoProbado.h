#pragma once

#include "core/CerrojoDeCarpeta.h"
#include "engine/Avisos.h"
#include "engine/roll/ListaDeBorradas.h"
#include "engine/roll/PruebaDeCopia.h"

namespace vellora::motor
{

/// The files of one photo as a person sees it: all of them go, or none.
using FotoEntera = std::vector<const FicheroDelCarrete *>;

/// What became of a deletion, in files.
struct CuentaDeBorrado {
    qint64 borrados = 0;
    qint64 liberados = 0; ///< bytes
    qint64 sinPrueba = 0; ///< kept, because the copy of their photo could not be proved
    qint64 negados = 0;   ///< the phone refused to delete them
    qint64 siguenAhi() const { return sinPrueba + negados; }
};

/// Takes photos off the phone whose every file has a proven copy. A photo goes whole or stays whole, as far as the
/// phone obeys: first the proof, then the note in "Borradas del iPhone.txt", then the phone is asked once more whether
/// its file is still the one that was proved, and then it goes. The first file to go goes alone, and its copy is proved
/// once more before the next. One thread.
class BorradoProbado
{
public:
    /// `carpeta`: where the copies are. `cuenta` is kept up to date for the caller, who may count more in it.
    BorradoProbado(const QString &carpeta, Copiadas &copiadas, Conexiones &conexiones, Avisos &avisar,
                   CuentaDeBorrado &cuenta);

    using Avance = std::function<void(const FicheroDelCarrete &)>;
    /// Why the run had to stop before its end; absent when it came to its end, was asked to stop, or the phone went.
    /// What stays and why goes to the log. `avance` is called after each file that went, and after each that stayed.
    std::optional<QString> borrar(const std::vector<FotoEntera> &fotos, const Avance &avance);

private:
    using Probada = std::vector<ListaDeBorradas::Linea>;

    std::optional<QString> preparar(const std::vector<FotoEntera> &fotos);
    std::optional<Probada> probar(const FotoEntera &foto);
    std::optional<QString> quitar(const std::vector<Probada> &tanda);
    std::optional<QString> quitarFoto(const Probada &probada);
    /// Words for why a file of the photo is not what was proved; absent when all are. Files that have gone are none.
    std::optional<QString> haCambiado(const Probada &probada);
    void dejar(const Probada &probada, size_t desde, const QString &motivo, qint64 CuentaDeBorrado::*donde);
    void decirPorQue(const FicheroDelCarrete &fichero, const QString &motivo);
    bool parado() const;

    QString carpeta;
    Copiadas &copiadas;
    Conexiones &conexiones;
    Avisos &avisar;
    CuentaDeBorrado &cuenta;
    Avance avance;
    std::optional<CerrojoDeCarpeta> cerrojo; ///< nobody else writes where the copies are
    std::optional<PruebaDeCopia> prueba;
    std::optional<ListaDeBorradas> lista;
    bool esLaPrimera = true; ///< no file has gone yet
};

} // namespace vellora::motor
