#pragma once

#include <QLocale>
#include <QString>

#include <optional>

/// Numbers, sizes and dates as the owner reads them, in Spanish whatever the system's language. Any thread.
namespace vellora::Formato
{

/// Spanish of Spain, without asking the system for an installed locale.
const QLocale &espanol();

/// Decimal megabytes (one decimal at most) or, from 1,000 MB on, gigabytes (two at most): "812,4 MB", "38,2 GB".
/// Absent gives "—".
QString tamano(std::optional<qint64> bytes);

/// "1234", "12.345".
QString entero(qint64 numero);

} // namespace vellora::Formato
