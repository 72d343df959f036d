#pragma once

#include <QString>
#include <QUrl>

/// Calling or writing to somebody by the computer's own programs.
namespace vellora::Contactar
{

/// What is a number or "+" of a text.
QString limpiarNumero(const QString &texto);

QUrl direccionDeLlamada(const QString &numero);
QUrl direccionDeMensaje(const QString &numero);
QUrl direccionDeFaceTime(const QString &numero);
QUrl direccionDeCorreo(const QString &direccion);
/// For the program of that service where there is one; else the service's public page.
QUrl direccionDeWhatsApp(const QString &numero, bool hayPrograma);

void llamar(const QString &numero);
void faceTime(const QString &numero);
void mensaje(const QString &numero);
void whatsapp(const QString &numero);
void correo(const QString &direccion);

} // namespace vellora::Contactar
