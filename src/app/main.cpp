#include "app/Ventana.h"
#include "app/cli/Ordenes.h"
#include "core/SegundoPlano.h"

#include <cstdlib>

int main(int argc, char **argv)
{
    const int codigo = argc > 1 ? vellora::ejecutarOrden(argc, argv) : vellora::abrirVentana(argc, argv);
    // A thread that hangs in the system would be left with what the end of the program takes down.
    if (vellora::SegundoPlano::delPrograma().quedaAlguno())
        std::_Exit(codigo);
    return codigo;
}
