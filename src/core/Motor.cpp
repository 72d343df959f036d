#include "core/Motor.h"

#include "core/Herramientas.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vellora::Motor
{

namespace
{

// Where pipx keeps the environment of a program: since 1.3, and before.
const QStringList pythonsDePipx{
    u"/.local/share/pipx/venvs/pymobiledevice3/bin/python3"_s, u"/.local/share/pipx/venvs/pymobiledevice3/bin/python"_s,
    u"/.local/pipx/venvs/pymobiledevice3/bin/python3"_s, u"/.local/pipx/venvs/pymobiledevice3/bin/python"_s};

bool esEjecutable(const QString &ruta)
{
    const QFileInfo info(ruta);
    return info.isFile() && info.isExecutable();
}

} // namespace

std::optional<Lanzamiento> buscarLanzamiento(const std::optional<QString> &recursos, const QString &casa)
{
    if (!recursos)
        return {};
    const auto binario = *recursos + u"/motor/motor"_s;
    if (esEjecutable(binario))
        return Lanzamiento{binario, {}};
    const auto guion = *recursos + u"/motor.py"_s;
    if (!QFileInfo::exists(guion))
        return {};
    for (const auto &python : pythonsDePipx) {
        if (esEjecutable(casa + python))
            return Lanzamiento{casa + python, {guion}};
    }
    return {};
}

const std::optional<Lanzamiento> &lanzamiento()
{
    static const auto valor = buscarLanzamiento(Herramientas::carpetaDeRecursos(), QDir::homePath());
    return valor;
}

bool disponible()
{
    return lanzamiento().has_value();
}

} // namespace vellora::Motor
