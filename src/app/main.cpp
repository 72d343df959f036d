#include "app/Ventana.h"
#include "app/cli/Ordenes.h"

int main(int argc, char **argv)
{
    return argc > 1 ? vellora::ejecutarOrden(argc, argv) : vellora::abrirVentana(argc, argv);
}
