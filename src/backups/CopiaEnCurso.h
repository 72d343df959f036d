#pragma once

#include "backups/ComprobacionDeCopia.h"
#include "core/CarpetaDeDestino.h"

#include <QString>

#include <optional>
#include <utility>

namespace vellora
{

/// A backup that is being made, in a folder of its own beside the one that it will take the place of: until it has been
/// checked, the old one stays where it is and nothing writes to it. What a killed program left is told from the disk
/// alone: a whole backup carries its note (`Comprobante`) and takes its place, anything else in the folder goes.
///
/// One at a time for each folder of backups: while the object lives the folder is locked, for other programs too, and
/// the lock dies with the process. Removal goes by descriptors, never through a link. All of it blocks: background
/// threads only; destruction too, as it removes what did not take its place.
class CopiaEnCurso
{
public:
    enum class Modo {
        Completa,       ///< everything anew, into an empty folder
        SobreLaAnterior ///< only what changed, on a twin of the old one: hard links, and copies of what is written in
                        ///< place. `Completa` where there is no checked one, or the volume knows no links
    };

    /// `guardadas`: how many earlier backups of this phone may stay (see `CopiasAnteriores`).
    static Resultado<CopiaEnCurso> abrir(const QString &copias, const QString &udid, Modo modo, int guardadas);
    CopiaEnCurso(CopiaEnCurso &&) noexcept = default;
    CopiaEnCurso &operator=(CopiaEnCurso &&) = delete;
    CopiaEnCurso(const CopiaEnCurso &) = delete;
    CopiaEnCurso &operator=(const CopiaEnCurso &) = delete;
    ~CopiaEnCurso();

    /// The folder to give to the tool, which makes the one of the UDID in it.
    QString destino() const;
    /// Where the new backup comes to stand meanwhile.
    QString carpeta() const { return destino() + u'/' + udid; }
    Modo modo() const { return modo_; }
    /// Bytes that the old backup fills on the disk; absent when there is none.
    std::optional<qint64> bytesDeLaAnterior() const;
    std::optional<qint64> libres() const;

    /// Puts the new backup, checked, in its place, with its note; the old one becomes an earlier one, or goes when none
    /// is to be kept and the new one is known to be whole. False when it could not: the new one then waits in its
    /// folder for the next start.
    bool colocar(ComprobacionDeCopia::Veredicto veredicto);

    /// Ends what a program that was killed had begun here. Does nothing while another program is at work in the folder.
    static void recuperar(const QString &copias, int guardadas);

private:
    CopiaEnCurso(QString lasCopias, QString elUdid, Modo elModo, int lasGuardadas, Descriptor elCerrojo)
        : copias(std::move(lasCopias))
        , udid(std::move(elUdid))
        , modo_(elModo)
        , guardadas(lasGuardadas)
        , cerrojo(std::move(elCerrojo))
    {
    }

    QString copias;
    QString udid;
    Modo modo_;
    int guardadas;
    bool esperando = false; ///< whole, and not in its place yet
    Descriptor cerrojo;     ///< the folder of backups, locked
};

} // namespace vellora
