#include "Tema.h"

#include <QJSEngine>

namespace vellora
{

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
