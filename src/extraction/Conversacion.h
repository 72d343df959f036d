#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>
#include <vector>

namespace vellora
{

/// One message. What tells it from the others is its place in the chat.
struct Mensaje {
    bool mio = false; ///< the owner's own
    QString quien;    ///< who sent it; empty for the owner's
    QString cuando;   ///< as the file has it, "dd/MM/yyyy HH:mm"; may be empty
    QString texto;
    bool operator==(const Mensaje &) const = default;
};

/// The messages of one text file, as it was when it was read. Only where each begins is worked out at once; its fields
/// are taken apart when asked for, so a quarter of a million messages stand in the bytes of their file. Free to read
/// from any thread.
class Mensajes
{
public:
    Mensajes() = default;
    /// A line that begins with "[" and has a "]" begins a message; others belong to the one before, without the blanks
    /// that they may have been indented by. Empty for a file that cannot be read.
    static Mensajes leer(const QString &fichero);
    static Mensajes deTexto(QByteArray texto);

    qsizetype cuantos() const { return static_cast<qsizetype>(principios.size()); }
    Mensaje mensaje(qsizetype cual) const;
    /// The day of its date, "dd/MM/yyyy", without the rest; empty when it has none.
    QString dia(qsizetype cual) const;

private:
    QByteArrayView bytesDe(qsizetype cual) const;

    QByteArray texto;
    std::vector<qsizetype> principios;
};

/// One chat.
struct Conversacion {
    QString nombre;
    QString fichero;
    Mensajes mensajes; ///< none until read
    bool cargada = false;
};

namespace Extraccion
{

/// All conversations of the result folder as one page that any browser opens, "Mis conversaciones.html", without a
/// script and without a request to anywhere. Its line of the summary; absent without conversations, and when the page
/// could not be written. Each file is read in pieces.
std::optional<QString> chatsEnPagina(const QString &desde);

} // namespace Extraccion

} // namespace vellora
