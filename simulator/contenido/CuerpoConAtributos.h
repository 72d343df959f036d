#pragma once

#include <QByteArray>
#include <QString>

namespace simulado
{

/// A message's attributedBody: an NSAttributedString with one run, as the phone archives it ("typedstream").
/// Since iOS 16 many messages carry their words only here, with the text column NULL.
QByteArray cuerpoConAtributos(const QString &texto);
/// The mutable form, which is as common: its first word names `quien`, so that there are several runs, the last of them
/// with the attributes of the first. A text of one word has one run.
QByteArray cuerpoConMencion(const QString &texto, const QByteArray &quien);

} // namespace simulado
