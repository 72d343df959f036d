#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// How text of the phone stands in the text files: what it says on several lines goes on indented, so that no line of
/// it can be taken for one that this program wrote. Any thread.
namespace vellora::Renglones
{

/// Stands before each line that goes on with the one above.
constexpr QByteArrayView sangria("    ");

/// Adds text of the phone, made valid: its first line where it stands, the others indented, empty ones empty. A line
/// ends with whatever some reader or editor takes for an end: LF, CR, both, VT, FF, NEL, and the separators of lines
/// and paragraphs.
void poner(QByteArray &a, QByteArrayView texto);
/// The same on one line: each end of a line becomes a blank.
void ponerEnUno(QByteArray &a, QByteArrayView texto);

/// A line as it was before it was indented.
inline QByteArrayView sinSangria(QByteArrayView linea)
{
    return linea.startsWith(sangria) ? linea.sliced(sangria.size()) : linea;
}

} // namespace vellora::Renglones
