#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"

#include <QFile>

#include <unistd.h>

int main(int argc, char *argv[])
{
    vellora::motor::Interrupcion::vigilar();
    QStringList argumentos;
    for (int i = 1; i < argc; ++i)
        argumentos << QFile::decodeName(argv[i]);
    vellora::motor::Avisos avisar(STDOUT_FILENO);
    return vellora::motor::ejecutarOrden(argumentos, avisar);
}
