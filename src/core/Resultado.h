#pragma once

#include <QString>

#include <optional>
#include <utility>

namespace vellora
{

/// What an operation gives, or the sentence for the owner that says why it gives nothing.
template <typename Valor> class Resultado
{
public:
    // Not explicit, so that an operation returns either of the two as it is.
    Resultado(Valor elValor) : valor(std::move(elValor)) {}
    static Resultado fallo(const QString &motivo) { return Resultado(std::nullopt, motivo); }

    explicit operator bool() const { return valor.has_value(); }
    Valor &operator*() & { return *valor; }
    const Valor &operator*() const & { return *valor; }
    Valor &&operator*() && { return *std::move(valor); }
    Valor *operator->() { return &*valor; }
    const Valor *operator->() const { return &*valor; }
    const QString &motivo() const { return texto; }

private:
    Resultado(std::optional<Valor> elValor, QString elMotivo) : valor(std::move(elValor)), texto(std::move(elMotivo)) {}

    std::optional<Valor> valor;
    QString texto;
};

} // namespace vellora
