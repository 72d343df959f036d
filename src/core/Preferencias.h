#pragma once

#include <QString>
#include <QStringList>

/// The handful of settings kept between runs, in "vellora/vellora.conf" of the owner's configuration folder.
/// Never a secret. Main thread only.
namespace vellora::Preferencias
{

/// A value of another type reads as the empty list.
QStringList lista(const QString &clave);
void ponLista(const QString &clave, const QStringList &valor);

QString texto(const QString &clave, const QString &porDefecto = {});
void ponTexto(const QString &clave, const QString &valor);

/// What is no "true" reads as false.
bool logico(const QString &clave, bool porDefecto = false);
void ponLogico(const QString &clave, bool valor);

} // namespace vellora::Preferencias
