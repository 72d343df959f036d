#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// Reading the text files of the result folder.
namespace vellora
{

class Aguja;

/// The files of a folder whose extension is exactly "txt", in the order of their paths. None where it cannot be listed.
QStringList ficherosDeTexto(const QString &carpeta);
/// The file's name without its extension: of a conversation, the other party.
QString nombreDeChat(const QString &fichero);
/// At most so many characters as a reader counts them; nothing is added where it was cut.
QString recortar(const QString &texto, int letras);

/// Each line that is not empty, without its line feed, until the callback gives false. The file is read in pieces; of a
/// line longer than a megabyte the first megabyte is given.
void porCadaLinea(const QString &fichero, const std::function<bool(QByteArrayView linea)> &linea);

/// Looks for the first line that holds a needle, in one file after the other. One thread each.
class PrimeraLinea
{
public:
    /// The needle must outlive the reader.
    explicit PrimeraLinea(const Aguja &laAguja);
    /// Its beginning, long enough for any excerpt; absent without one, and for a file that cannot be read.
    std::optional<QString> en(const QString &fichero);

private:
    void guardarPendiente(qsizetype lleno);
    QString lineaDe(int entrada, qsizetype hallado, qsizetype lleno);

    const Aguja &aguja;
    QByteArray bytes;
    qsizetype pendientes = 0; ///< bytes at the start of the buffer, of a line that has not ended
};

} // namespace vellora
