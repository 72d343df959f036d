#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QMetaType>
#include <QVariant>

#include <optional>

namespace simulado
{

/// A keyed-archiver reference. Everything else of a property list is held in ordinary QVariant types:
/// bool, qint64/quint64, double, QString, QByteArray, QDateTime, QVariantList, QVariantMap.
struct Uid {
    quint64 valor = 0;
};

/// Reads XML or binary; absent when the bytes are neither.
std::optional<QVariant> leerPlist(const QByteArray &bytes);
QByteArray plistXml(const QVariant &valor);
QByteArray plistBinario(const QVariant &valor);

/// JSON to the same types: whole numbers become qint64, {"$datos": base64} becomes QByteArray.
QVariant desdeJson(const QJsonValue &valor);
/// The inverse, for answers and counters.
QJsonValue aJson(const QVariant &valor);

} // namespace simulado

Q_DECLARE_METATYPE(simulado::Uid)
