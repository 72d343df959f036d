#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// How the engine is to be started. Each value is found once, on first use; free to read from any thread.
namespace vellora::Motor
{

struct Lanzamiento {
    QString ejecutable;
    QStringList argumentos; ///< what goes before the command's own arguments
    bool operator==(const Lanzamiento &) const = default;
};

/// The packed engine first, then a script of the resources under the Python of pymobiledevice3's own environment;
/// absent when there is neither.
std::optional<Lanzamiento> buscarLanzamiento(const std::optional<QString> &recursos, const QString &casa);
const std::optional<Lanzamiento> &lanzamiento();
bool disponible();

} // namespace vellora::Motor
