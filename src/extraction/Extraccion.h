#pragma once

#include "core/BaseDeDatos.h"
#include "core/CarpetaDeDestino.h"
#include "core/CarpetaDeTrabajo.h"
#include "extraction/Fechas.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// The databases of an unpacked backup turned into files that anyone can open. Nothing here keeps a state; every
/// operation blocks, and belongs off the main thread.
///
/// An extractor takes the unpacked folder and the result folder and gives its line of the summary, absent when it found
/// nothing or could write nothing. A line claims only what stands in the result folder. Names in results come from
/// outside and never leave that folder.
namespace vellora::Extraccion
{

/// What lies in a trash of the phone goes to this folder of its own under the result folder, and is listed nowhere
/// among what the owner has.
constexpr auto carpetaDeLoEliminado = "Eliminado hace poco/";

/// A database of the phone with its latest changes taken in: where there are any, in a private copy, which is removed
/// with this object.
class BaseDelTelefono
{
public:
    using PorFila = std::function<void(const Fila &)>;

    /// `quedoSinDiario`: there are latest changes, and they could not be taken in.
    BaseDelTelefono(BaseDeDatos laBase, std::optional<CarpetaDeTrabajo> laPrivada, bool quedoSinDiario = false)
        : privada(std::move(laPrivada)), base(std::move(laBase)), sinDiario(quedoSinDiario)
    {
    }

    /// Runs the query with its order. A damaged page can keep a sort from giving anything; what can be read of the
    /// query is then given as it is stored. A table or column of another version of iOS gives nothing.
    void porCadaFila(const char *consulta, const char *orden, const PorFila &fila) const;
    /// The columns that a table has in this version of iOS; none for a table that is not there. What is missing is
    /// asked for in no query: versions are never guessed.
    QSet<QByteArray> columnas(const char *tabla) const;
    /// Whether some query could not be run to its end because the file is damaged, or its latest changes are missing.
    bool danada() const { return sinDiario || base.danada(); }
    /// Whether a query gives any row; false too when it cannot be run.
    bool hay(const char *consulta) const;

private:
    std::optional<CarpetaDeTrabajo> privada; ///< of the copy; absent when the file is read where it is
    BaseDeDatos base;
    bool sinDiario;
};

/// Opens a private copy or, when that cannot be made or there is nothing in the log, the file itself. Absent for a
/// missing file.
std::optional<BaseDelTelefono> abrirPublico(const QString &fichero);
/// Files of that very name under a folder; links and empty files are not looked at. First where the phone keeps it,
/// then those that hold something, then by name: never in the order in which a disk happens to list them.
QStringList buscar(const QString &nombre, const QString &dentro);
/// The first of them; empty without any.
QString buscarPublico(const QString &nombre, const QString &dentro);

/// A column as one field of a table, added to a line: on one line, with ";" as ",".
void ponerCampo(QByteArray &linea, const Fila &fila, int columna);

/// One kind of thing out of one or more databases as one file: a heading, then what `linea` adds for each row.
struct Tabla {
    QString fichero; ///< under the result folder
    QByteArray cabecera;
    /// What to ask a database, by the columns that it has; empty for one that holds nothing of the kind.
    std::function<QByteArray(const BaseDelTelefono &)> consulta;
    const char *orden;
    std::function<void(QByteArray &linea, const Fila &fila)> linea;
};
/// For `Tabla::consulta`: the same for all.
inline auto siempre(const char *consulta)
{
    return [consulta](const BaseDelTelefono &) {
        return QByteArray(consulta);
    };
}
/// `bases`: their files, one after the other; what is missing gives nothing. Rows that were written; 0 when there were
/// none, or when the file could not be written.
qint64 escribirTabla(const Tabla &tabla, const QStringList &bases, const QString &a);

/// Puts a file of the unpacked folder into the result folder: as a second name of its bytes where one volume holds both
/// (the unpacked folder goes away), as a copy otherwise. Nothing that is there is lost: the same file stays, one that
/// is the beginning of the other gives way, and of two different ones the new one becomes "NAME (2)". False when it
/// could not be written.
bool copiarFichero(const QString &origen, CarpetaDeDestino &destino, const QString &relativa);

/// Runs all extractors, in the order of the summary; its lines. Clears away what a run that was ended left behind.
QStringList todo(const QString &desde, const QString &a);

std::optional<QString> mensajes(const QString &desde, const QString &a);
std::optional<QString> whatsapp(const QString &desde, const QString &a);
std::optional<QString> notasDeVoz(const QString &desde, const QString &a);
std::optional<QString> contactos(const QString &desde, const QString &a);
std::optional<QString> llamadas(const QString &desde, const QString &a);
std::optional<QString> notas(const QString &desde, const QString &a);
std::optional<QString> calendario(const QString &desde, const QString &a);
std::optional<QString> recordatorios(const QString &desde, const QString &a);
std::optional<QString> safari(const QString &desde, const QString &a);
std::optional<QString> salud(const QString &desde, const QString &a);
std::optional<QString> buzonDeVoz(const QString &desde, const QString &a);

} // namespace vellora::Extraccion
