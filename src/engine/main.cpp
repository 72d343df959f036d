#include "engine/Interrupcion.h"
#include "engine/Ordenes.h"
#include "platform/Procesos.h"

#include <QFile>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// What a damaged or hostile file or phone makes this process ask for ends its own call, and never the computer's
/// memory. The sanitizers reserve far more than that for themselves.
void acotarMemoria(bool deImagenes)
{
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    constexpr rlim_t mega = 1024UL * 1024;
    // A picture of 48 million points takes some 400 MB to be opened, and two are opened at once.
    const rlim_t maximo = (deImagenes ? 900 : 400) * mega;
    rlimit limite = {};
    if (getrlimit(RLIMIT_DATA, &limite) != 0 || limite.rlim_max < maximo)
        return;
    limite.rlim_cur = maximo;
    setrlimit(RLIMIT_DATA, &limite);
#else
    static_cast<void>(deImagenes);
#endif
}

} // namespace

int main(int argc, char *argv[])
{
    umask(S_IRWXG | S_IRWXO);
    vellora::guardarSecretos(); // keys and what they open pass through here
    vellora::motor::Interrupcion::vigilar();
    QStringList argumentos;
    for (int i = 1; i < argc; ++i)
        argumentos << QFile::decodeName(argv[i]);
    acotarMemoria(argumentos.value(0) == u"miniaturas");
    vellora::motor::Avisos avisar(STDOUT_FILENO);
    return vellora::motor::ejecutarOrden(argumentos, avisar);
}
