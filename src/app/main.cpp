#include "app/Ventana.h"
#include "app/cli/Ordenes.h"
#include "core/SegundoPlano.h"
#include "platform/Procesos.h"

#include <cstdlib>
#include <sys/stat.h>

int main(int argc, char **argv)
{
    // All that is written here is one person's, and so is what the tools write that are started from here.
    umask(S_IRWXG | S_IRWXO);
    vellora::sinVolcados();
    const int codigo = argc > 1 ? vellora::ejecutarOrden(argc, argv) : vellora::abrirVentana(argc, argv);
    // A thread that hangs in the system would be left with what the end of the program takes down.
    if (vellora::SegundoPlano::delPrograma().quedaAlguno())
        std::_Exit(codigo);
    return codigo;
}
