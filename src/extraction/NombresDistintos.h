#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace vellora
{

/// File names for one folder, no two of which any file system takes for the same: capitals, and the ways in which an
/// accent may be written, do not tell them apart.
class NombresDistintos
{
public:
    /// "NAME" + extension, or "NAME (2)", "NAME (3)"… where that is taken. Each "/" becomes "-"; what no file system
    /// takes is shortened, and told apart by a digest.
    QByteArray tomar(const QByteArray &nombre, const QByteArray &extension);

    /// The name alone, with room for `reserva` bytes behind it.
    static QByteArray recortado(const QByteArray &nombre, qsizetype reserva);

private:
    QHash<QString, int> tomados; ///< how often each was asked for
};

} // namespace vellora
