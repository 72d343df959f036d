#pragma once

#include <QList>
#include <QString>
#include <QUuid>

#include <functional>

namespace vellora
{

/// One thing found.
struct ResultadoGlobal {
    QUuid id;     ///< made when it was found
    QString tipo; ///< "Mensaje", "WhatsApp", "Nota", "Contacto", "Cita" or "Foto"
    QString titulo;
    QString extracto;
    QString fichero; ///< the file that holds it
    QString icono;
    bool esCarpetaFotos = false;
};

namespace BuscadorGlobal
{

/// How much of the conversations has been read, from 0 to 1. Called from any thread, one call at a time.
using Avance = std::function<void(double)>;

/// Looks for `texto` in what has been saved: conversations, notes, contacts, calendar entries, in `datos`, and the
/// index of the photos. Capitals do not count, accents do. Results in the order of those sources, inside each in the
/// order of its files and lines; one for each conversation. What cannot be read is passed over. Blocks; nothing is
/// written. Conversations are read in pieces, on every core; memory does not grow with them.
QList<ResultadoGlobal> buscarEn(const QString &texto, const QString &datos, const QString &indiceFotos,
                                const Avance &avance = {});

} // namespace BuscadorGlobal

} // namespace vellora
