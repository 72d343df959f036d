#include "extraction/Contactar.h"

#include "platform/AbridorDeDirecciones.h"

using namespace Qt::StringLiterals;

namespace vellora::Contactar
{

namespace
{

QUrl con(const QString &esquema, const QString &quien)
{
    QUrl direccion;
    direccion.setScheme(esquema);
    direccion.setPath(quien);
    return direccion;
}

} // namespace

QString limpiarNumero(const QString &texto)
{
    QString limpio;
    for (const auto letra : texto) {
        if (letra.isNumber() || letra == u'+')
            limpio += letra;
    }
    return limpio;
}

QUrl direccionDeLlamada(const QString &numero)
{
    return con(u"tel"_s, limpiarNumero(numero));
}

QUrl direccionDeMensaje(const QString &numero)
{
    return con(u"sms"_s, limpiarNumero(numero));
}

QUrl direccionDeFaceTime(const QString &numero)
{
    return con(u"facetime"_s, limpiarNumero(numero));
}

QUrl direccionDeCorreo(const QString &direccion)
{
    return con(u"mailto"_s, direccion);
}

QUrl direccionDeWhatsApp(const QString &numero, bool hayPrograma)
{
    const auto limpio = limpiarNumero(numero).remove(u'+');
    return QUrl((hayPrograma ? u"whatsapp://send?phone="_s : u"https://wa.me/"_s) + limpio);
}

void llamar(const QString &numero)
{
    abrirDireccion(direccionDeLlamada(numero));
}

void faceTime(const QString &numero)
{
    abrirDireccion(direccionDeFaceTime(numero));
}

void mensaje(const QString &numero)
{
    abrirDireccion(direccionDeMensaje(numero));
}

void whatsapp(const QString &numero)
{
    abrirDireccion(direccionDeWhatsApp(numero, hayQuienAbra(u"whatsapp"_s)));
}

void correo(const QString &direccion)
{
    abrirDireccion(direccionDeCorreo(direccion));
}

} // namespace vellora::Contactar
