#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

/// How the engine is started, and how its notices are read. Each place is found once, on first use; free to use from
/// any thread.
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

/// One notice of the engine: a line of output that holds one JSON object with at least the member "tipo", a text.
struct Aviso {
    QString tipo;
    /// The whole object, `tipo` included; or the object of the file that carried it.
    QJsonObject datos;

    /// Absent unless the member is a number; a fraction is cut off, and what no 64-bit integer holds is absent.
    std::optional<qint64> entero(QLatin1StringView clave) const;
    /// Absent unless the member is a text.
    std::optional<QString> texto(QLatin1StringView clave) const;
};

/// Absent when the line is no notice, that is to say plain text for the log. What is too long for a line comes in the
/// JSON file that the member "fichero_datos" names; the file is removed once read, and one that cannot be read stays.
std::optional<Aviso> interpretar(const QString &linea);

} // namespace vellora::Motor
