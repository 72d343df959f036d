#pragma once

#include "core/CarpetaDeDestino.h"
#include "engine/roll/Carrete.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QString>

#include <memory>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <vector>

namespace vellora::motor
{

/// What of the roll already stands in a folder of the computer, wherever the owner has moved it to inside that folder.
/// Beside the photos, `.vellora-huellas-UDID` keeps what was true of each file when it was copied: a line each of
/// SHA-256 in hexadecimal, size, modification in milliseconds, place in the roll (or path in the phone, of what
/// is not in it) and place in the folder; then the
/// moment of the copy in milliseconds since 1970, the phone's modification and birth in nanoseconds, its blocks and
/// links, and the copy's own last change (ctime) in nanoseconds; parted by tabs. Lines of former versions end after the
/// fifth. A line without a place in the folder takes back those before it. The file is only ever added to; of two lines
/// for one file the later counts. `anotar`, `anotarSitio` and `desmentir` from any thread, the rest while nobody reads.
class Copiadas
{
public:
    /// Reads the folder's names and the notes. A folder that is not there holds nothing.
    static Copiadas leer(const QString &carpeta, const QString &udid);

    enum class Juicio {
        Falta,
        /// Files of that name and size are there, but not the one that was noted, or it was changed or moved since:
        /// only content can tell.
        QuizaEste,
        /// Noted when it was copied, of the same file of the phone, and untouched since.
        Esta
    };
    struct Copia {
        Juicio juicio = Juicio::Falta;
        QByteArray relativa; ///< where it stands in the folder, or likeliest stands; empty with `Falta`
    };
    Copia juzgar(const FicheroDelCarrete &fichero) const;
    /// Every file that may be a copy of it, by its name and size, the likeliest first.
    QByteArrayList candidatas(const FicheroDelCarrete &fichero) const;

    /// SHA-256 of the phone's file. It stands for the phone's bytes: absent unless they were read on this very day of
    /// the calendar and nothing that the phone tells of the file has changed since. A file whose bytes alone were
    /// changed, its date put back, is told by nothing: hence the day.
    std::optional<QByteArray> huella(const FicheroDelCarrete &fichero) const;
    /// SHA-256 that a copy of it must have, by the note of whatever day: it tells copies from other files, and proves
    /// nothing of the phone.
    std::optional<QByteArray> huellaDeSuCopia(const FicheroDelCarrete &fichero) const;

    /// Notes that the phone's file has this content, as it was read just now, and that a copy of it stands there, on
    /// the disk. False when it cannot be written.
    bool anotar(const FicheroDelCarrete &fichero, const QByteArray &relativa, const QByteArray &huella,
                const struct stat &copia);
    /// Notes another place of the copy, the phone not asked: the day of the note stays.
    bool anotarSitio(const FicheroDelCarrete &fichero, const QByteArray &relativa, const struct stat &copia);
    /// Takes back what was noted of a file whose copy turned out to be another: the next copy looks at content.
    bool desmentir(const FicheroDelCarrete &fichero);

    static QString nombreDeNotas(const QString &udid) { return QStringLiteral(".vellora-huellas-") + udid; }

private:
    struct Nota {
        QByteArray huella;
        QByteArray relativa;
        FichaAfc ficha;     ///< of notes of former versions only the size and the date in milliseconds
        qint64 momento = 0; ///< of the copy; 0 when not noted
        qint64 cambio = 0;  ///< of the copy's file; 0 when not noted
    };
    struct Local {
        QByteArray relativa;
        qint64 tamano = 0;
        qint64 modificado = 0; ///< milliseconds since 1970
        qint64 cambio = 0;     ///< nanoseconds since 1970
    };

    Copiadas(QString laCarpeta, const QString &udid);
    void leerCarpeta();
    void leerNotas();
    void leerNota(const QList<QByteArray> &partes);
    const Nota *nota(const FicheroDelCarrete &fichero) const;
    bool estaIntacta(const Nota &suya) const;
    bool escribirNota(const QByteArray &relativaEnElCarrete, const Nota &nota);

    QString carpeta;
    QString notas;
    QHash<QByteArray, std::vector<Local>> porNombre;
    QHash<QByteArray, Nota> anotadas;
    std::unique_ptr<std::mutex> mutex = std::make_unique<std::mutex>();
    Descriptor abierta;
};

} // namespace vellora::motor
