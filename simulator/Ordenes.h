#pragma once

#include <QJsonObject>

#include <functional>
#include <memory>

namespace simulado
{

class Mux;
class Telefono;
struct AjustesTelefono;

/// The orders that tests and people give on standard input, one JSON object a line. Used from one thread.
class Ordenes
{
public:
    /// Makes and plugs in a phone. Returns an error sentence, or empty.
    using Alta = std::function<QString(const AjustesTelefono &ajustes)>;

    Ordenes(Mux &mux, Alta alta);
    /// Obeys one line and gives the answer line, without its end.
    QByteArray obedecer(const QByteArray &linea);
    bool salir() const { return salir_; }

private:
    QJsonObject obedecer(const QJsonObject &orden);
    QJsonObject anadir(const QJsonObject &orden);

    Mux &mux_;
    const Alta alta_;
    bool salir_ = false;
};

} // namespace simulado
