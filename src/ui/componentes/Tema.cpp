#include "ui/componentes/Tema.h"

#include <QFont>
#include <QJSEngine>

#include <array>

namespace vellora
{

namespace
{

struct Letra {
    int pixeles;
    int peso;
};

// Each pair costs a font at start-up: the side list and the header share four.
constexpr std::array<Letra, 5> letras{{
    {14, QFont::Normal},   // Cuerpo
    {12, QFont::Normal},   // Menor
    {15, QFont::DemiBold}, // Seccion
    {22, QFont::Bold},     // Titulo
    {12, QFont::DemiBold}, // Grupo
}};

} // namespace

int Tema::letra(int tipo)
{
    return letras.at(static_cast<std::size_t>(tipo)).pixeles;
}

int Tema::peso(int tipo)
{
    return letras.at(static_cast<std::size_t>(tipo)).peso;
}

Tema &Tema::unico()
{
    static Tema tema;
    return tema;
}

Tema *Tema::create(QQmlEngine *, QJSEngine *)
{
    auto *tema = &unico();
    QJSEngine::setObjectOwnership(tema, QJSEngine::CppOwnership);
    return tema;
}

Tema::Eleccion Tema::eleccionDe(const QString &texto)
{
    if (texto == QStringLiteral("claro"))
        return Eleccion::Claro;
    return texto == QStringLiteral("oscuro") ? Eleccion::Oscuro : Eleccion::Sistema;
}

void Tema::elegir(Eleccion nueva)
{
    eleccion = nueva;
    aplicar();
}

void Tema::ponSistemaOscuro(bool valor)
{
    sistemaOscuro = valor;
    aplicar();
}

void Tema::aplicar()
{
    const auto nuevo = eleccion == Eleccion::Sistema ? sistemaOscuro : eleccion == Eleccion::Oscuro;
    if (nuevo == oscuro_)
        return;
    oscuro_ = nuevo;
    emit cambio();
}

} // namespace vellora
