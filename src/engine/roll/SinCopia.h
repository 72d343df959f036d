#pragma once

#include "engine/roll/BaseDeFotos.h"
#include "engine/roll/Carrete.h"

namespace vellora::motor
{

/// Photos that the phone's list tells of and that no copy of the roll holds, and those that are copied but never
/// deleted. While there are any, whoever removes the list says so first: it is all that the phone knows of them.
struct SinCopia {
    qint64 soloICloud = 0;
    qint64 compartidas = 0;
    qint64 sincronizadas = 0;
    qint64 deOtrosSitios = 0;
    qint64 aparte = 0; ///< copied: they stay in the phone (`Carrete::aparte`)
    QStringList albumesCompartidos;

    /// For the owner, a sentence for each kind that is not copied, with its number.
    QStringList frases() const;
    /// What removing the list means for all of them; absent when there is none.
    std::optional<QString> alQuitarLaLista() const;
};
SinCopia contarSinCopia(const ListaDeFotos &lista, const Carrete &carrete);
/// `SinCopia::alQuitarLaLista` of the phone's list; empty when nothing is lost with it, or the list cannot be read.
QString alQuitarLaLista(Afc &afc, const Carrete &carrete);

} // namespace vellora::motor
