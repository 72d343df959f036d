#include "ui/sesion/AjustesDeVentana.h"

#include "core/Preferencias.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

const auto claveTema = u"tema"_s;
const auto claveIcono = u"iconoEnLaBarra"_s;
const auto claveSeguir = u"seguirEnLaBarra"_s;
const auto claveSeccion = u"seccion"_s;
const auto claveLugar = u"ventana"_s;

} // namespace

AjustesDeVentana::AjustesDeVentana(QObject *padre)
    : QObject(padre)
    , tema_(Preferencias::texto(claveTema))
    , iconoEnLaBarra_(Preferencias::logico(claveIcono, true))
    , seguirEnLaBarra_(Preferencias::logico(claveSeguir))
    , seccion_(Preferencias::texto(claveSeccion).toInt())
{
}

void AjustesDeVentana::ponTema(const QString &nuevo)
{
    tema_ = nuevo;
    Preferencias::ponTexto(claveTema, nuevo);
    emit cambio();
}

void AjustesDeVentana::ponIconoEnLaBarra(bool visible)
{
    iconoEnLaBarra_ = visible;
    Preferencias::ponLogico(claveIcono, visible);
    emit cambio();
}

void AjustesDeVentana::ponSeguirEnLaBarra(bool sigue)
{
    seguirEnLaBarra_ = sigue;
    Preferencias::ponLogico(claveSeguir, sigue);
    emit cambio();
}

void AjustesDeVentana::ponHayBarra(bool hay)
{
    hayBarra_ = hay;
    emit cambio();
}

void AjustesDeVentana::ponSeccion(int cual)
{
    if (cual == seccion_)
        return;
    seccion_ = cual;
    Preferencias::ponTexto(claveSeccion, QString::number(cual));
    emit cambio();
}

QRect AjustesDeVentana::lugar() const
{
    const auto partes = Preferencias::texto(claveLugar).split(u' ');
    if (partes.size() != 4)
        return {};
    return {partes[0].toInt(), partes[1].toInt(), partes[2].toInt(), partes[3].toInt()};
}

void AjustesDeVentana::ponLugar(const QRect &lugar)
{
    Preferencias::ponTexto(claveLugar,
                           u"%1 %2 %3 %4"_s.arg(lugar.x()).arg(lugar.y()).arg(lugar.width()).arg(lugar.height()));
}

} // namespace vellora
