#pragma once

#include <QByteArray>
#include <QString>

namespace simulado
{

/// A message's attributedBody: an NSAttributedString with one run, as the phone archives it ("typedstream").
/// Since iOS 16 many messages carry their words only here, with the text column NULL.
QByteArray cuerpoConAtributos(const QString &texto);

} // namespace simulado
