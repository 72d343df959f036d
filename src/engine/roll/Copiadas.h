#pragma once

#include "core/CarpetaDeDestino.h"
#include "engine/roll/Carrete.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace vellora::motor
{

/// What of the roll already stands in a folder of the computer, wherever the owner has moved it to inside that folder.
/// Beside the photos, `.vellora-huellas-UDID` keeps what was true of each file when it was copied: a line each of
/// SHA-256 in hexadecimal, size, modification in milliseconds, place in the roll and place in the folder, parted by
/// tabs. The file is only ever added to; of two lines for one file the later counts. `anotar` from any thread, the rest
/// while nobody calls it.
class Copiadas
{
public:
    /// Reads the folder's names and the notes. A folder that is not there holds nothing.
    static Copiadas leer(const QString &carpeta, const QString &udid);

    enum class Juicio {
        Falta,
        /// A file of that name and size is there, of another date and not noted: only its content can tell.
        QuizaEste,
        /// Noted when it was copied and still there with its size, or with the same name, size and date.
        Esta
    };
    struct Copia {
        Juicio juicio = Juicio::Falta;
        QByteArray relativa; ///< where it stands in the folder; empty with `Falta`
    };
    Copia juzgar(const FicheroDelCarrete &fichero) const;
    /// SHA-256 of the phone's file as it was read when it was copied; absent when not noted, or it has changed since.
    std::optional<QByteArray> huella(const FicheroDelCarrete &fichero) const;

    /// Notes that the phone's file has this content and that a copy of it stands there, on the disk. False when it
    /// cannot be written.
    bool anotar(const FicheroDelCarrete &fichero, const QByteArray &relativa, const QByteArray &huella);

    static QString nombreDeNotas(const QString &udid) { return QStringLiteral(".vellora-huellas-") + udid; }

private:
    struct Nota {
        QByteArray huella;
        QByteArray relativa;
        qint64 tamano = 0;
        qint64 modificado = 0;
    };
    struct Local {
        QByteArray relativa;
        qint64 tamano = 0;
        qint64 modificado = 0; ///< milliseconds since 1970
    };

    Copiadas(QString laCarpeta, const QString &udid);
    void leerCarpeta();
    void leerNotas();
    const Nota *nota(const FicheroDelCarrete &fichero) const;

    QString carpeta;
    QString notas;
    QHash<QByteArray, std::vector<Local>> porNombre;
    QHash<QByteArray, Nota> anotadas;
    std::unique_ptr<std::mutex> mutex = std::make_unique<std::mutex>();
    Descriptor abierta;
};

} // namespace vellora::motor
