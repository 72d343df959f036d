#pragma once

#include "session/Dispositivo.h"

#include <QMap>
#include <QSemaphore>
#include <QStringList>

#include <optional>
#include <utility>

/// Which phones are on the cable, and what one says of itself, by short runs of the tools. Everything here blocks:
/// background threads only.
namespace vellora::Detector
{

/// One permit: readings of the phone never overlap.
QSemaphore &turno();

/// UDIDs, in the tool's order; empty without the tool. Does not wait for its turn.
QStringList conectados();

/// Absent when the phone does not tell its name. Waits for its turn and keeps it for the whole reading. A tool that
/// does not answer in time is the last one that is started; `callado`, when given, says so.
std::optional<Dispositivo> leer(const QString &udid, bool *callado = nullptr);

/// One look at all the phones on the cable.
struct Lectura {
    QStringList conectados;    ///< as listed
    QList<Dispositivo> leidos; ///< those that told their names
    QStringList callados;      ///< those of whom a tool got no answer in time
    /// Each of them told its name, and all answered.
    bool entera() const { return leidos.size() == conectados.size() && callados.isEmpty(); }
};
Lectura leerTodos();

/// Runs `trabajo` when the phone is free of other readings.
template <typename Trabajo> auto enTurno(Trabajo trabajo)
{
    const QSemaphoreReleaser permiso((turno().acquire(), turno()));
    return trabajo();
}

/// The UDIDs in the output of the listing tool: pieces of more than ten characters.
QStringList udidsEn(const QString &salida);

/// What the tool answered for one key; absent when it is empty or the tool's sentence for a phone that has gone, which
/// it writes where the value would stand.
std::optional<QString> valorEn(const QString &salida);

/// Keys and values of lines such as "BatteryCurrentCapacity: 87"; a value may hold colons, a repeated key keeps its
/// last.
QMap<QString, QString> paresEn(const QString &salida);

/// The record made of what the tools answered; absent texts and maps without the key leave their field absent.
Dispositivo componer(const QString &udid, const QString &nombre, const QMap<QString, QString> &bateria,
                     const QMap<QString, QString> &disco, const std::optional<QString> &producto,
                     const std::optional<QString> &version);

} // namespace vellora::Detector
