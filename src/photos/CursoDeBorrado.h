#pragma once

#include "core/Motor.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace vellora
{

class Tarea;

/// A sentence for the owner at the end.
using Resumen = std::function<void(const QString &)>;

/// How far a deletion from the phone has come, so that one that is cut short (the owner's stop, the cable, a program
/// that dies) is told with its numbers all the same: in the strip, in the journal and to whoever asked for it.
class CursoDeBorrado
{
public:
    /// Takes in what a notice of the engine tells of it.
    void mirar(const Motor::Aviso &aviso);
    /// The sentence for a deletion that did not come to its end; absent when it did.
    std::optional<QString> corte() const;

    /// Ends the job by the engine's exit status; a cut is told first, also to `resumen` where there is one.
    void cerrar(Tarea &tarea, int codigo, const Resumen &resumen = {}) const;

private:
    qint64 borrados = 0;
    qint64 porBorrar = 0; ///< files that were to go in all
    QString error;        ///< the engine's reason, if it gave one
    bool acabado = false;
};

/// What the end of a deletion left in the phone.
struct LoQueSigue {
    explicit LoQueSigue(const Motor::Aviso &fin);

    qint64 siguen = 0;    ///< files that should have gone
    qint64 sinPrueba = 0; ///< of those: their copy could not be proved
    qint64 sinCopiar = 0; ///< files that were never to go, having no copy
    qint64 sinMirar = 0;  ///< folders of the phone that could not be looked into: what they hold is not known
    /// Why a deletion took nothing away, as a sentence.
    QString porQueNada() const;
};

} // namespace vellora
