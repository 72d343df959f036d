#include "app/TrasRefrescar.h"

#include "ui/sesion/Programa.h"

namespace vellora
{

void trasRefrescar(Programa &programa, const std::optional<QString> &antes)
{
    programa.modelo.comprobarAcceso();
    programa.bateria.cargarSaludBateria();
    programa.automaticas.trasRefrescar(antes);
    // After the backup was weighed: this is a job too, and a backup does not start beside one.
    programa.bateria.quizaMirarRed();
}

} // namespace vellora
