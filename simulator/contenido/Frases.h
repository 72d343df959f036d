#pragma once

#include "contenido/Azar.h"

#include <QString>

#include <vector>

namespace simulado
{

/// One turn of a dialogue: who speaks (false: the other party) and what.
struct Turno {
    bool mio;
    QString texto;
};

/// A short dialogue between the owner and one other person, its places and hours filled in.
std::vector<Turno> dialogo(Azar &a);
/// One line as anyone in a group might write it.
QString fraseDeGrupo(Azar &a);
/// A text from a company: codes, parcels, appointments.
QString avisoDeEmpresa(Azar &a);

} // namespace simulado
