#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"

#include <QFile>

#include <cstring>
#include <unistd.h>

int main(int argc, char *argv[])
{
    vellora::motor::Interrupcion::vigilar();
    QStringList argumentos;
    for (int i = 1; i < argc; ++i)
        argumentos << QFile::decodeName(argv[i]);
    // The last argument of this one is a password, which the list of processes need not show any longer.
    if (argumentos.value(0) == u"contrasenas" && argc > 4)
        std::memset(argv[4], 0, std::strlen(argv[4]));
    vellora::motor::Avisos avisar(STDOUT_FILENO);
    return vellora::motor::ejecutarOrden(argumentos, avisar);
}
