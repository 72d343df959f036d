#include "backups/EntornoDeHerramienta.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vellora
{

Ejecutor::Entorno entornoDeHerramienta()
{
    auto variables = Ejecutor::entornoDelPrograma();
    const auto biblioteca = u"/usr/libexec/coreutils/libstdbuf.so"_s;
    if (QFileInfo::exists(biblioteca)) {
        const auto previas = variables.value(u"LD_PRELOAD"_s);
        variables[u"LD_PRELOAD"_s] = previas.isEmpty() ? biblioteca : previas + u':' + biblioteca;
        variables[u"_STDBUF_O"_s] = u"L"_s;
    }
    return variables;
}

} // namespace vellora
