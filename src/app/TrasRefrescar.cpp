#include "app/TrasRefrescar.h"

#include "ui/sesion/Programa.h"

namespace vellora
{

void trasRefrescar(Programa &programa, const std::optional<QString> &antes)
{
    programa.modelo.comprobarAcceso();
    programa.bateria.cargarSaludBateria();
    programa.bateria.quizaMirarRed();
    programa.automaticas.trasRefrescar(antes);
}

} // namespace vellora
