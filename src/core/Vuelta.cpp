#include "core/Vuelta.h"

namespace vellora
{

thread_local Vuelta *Vuelta::delHilo = nullptr;

Vuelta::EnEsteHilo::EnEsteHilo(Vuelta &suya)
{
    delHilo = &suya;
}

Vuelta::EnEsteHilo::~EnEsteHilo()
{
    delHilo = nullptr;
}

void Vuelta::parar()
{
    const std::lock_guard cerrojo(mutex);
    siguiendo = false;
}

Vuelta::Incidencias Vuelta::incidencias() const
{
    const std::lock_guard cerrojo(mutex);
    return habidas;
}

bool Vuelta::seguimos()
{
    return delHilo == nullptr || delHilo->siguiendo;
}

bool Vuelta::publicar(const std::function<bool()> &dar)
{
    if (delHilo == nullptr)
        return dar();
    const std::lock_guard cerrojo(delHilo->mutex);
    return delHilo->siguiendo && dar();
}

void Vuelta::danada(const QString &base)
{
    if (delHilo == nullptr)
        return;
    const std::lock_guard cerrojo(delHilo->mutex);
    if (!delHilo->habidas.danadas.contains(base))
        delHilo->habidas.danadas << base;
}

void Vuelta::sinEscribir(const QByteArray &relativa)
{
    if (delHilo == nullptr || !delHilo->siguiendo)
        return;
    const std::lock_guard cerrojo(delHilo->mutex);
    delHilo->habidas.sinEscribir << QString::fromUtf8(relativa);
}

} // namespace vellora
