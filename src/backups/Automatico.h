#pragma once

#include <QString>

#include <optional>

/// The weekly backup, which runs with the program closed: a script, and a timer of the owner's own system manager
/// (systemd) that starts it every few hours. The script decides: it says nothing when the phone is not there, and
/// leaves a backup that is younger than a week as it is.
/// The timer's file is the state; it holds the phone and the folder that were chosen when it was switched on.
namespace vellora::Automatico
{

const QString &etiqueta();
constexpr qint64 diasEntreCopias = 7;

/// Whether the timer's file is there. Any thread.
bool activa();
/// The log of the script; empty when it cannot be read.
QString registro();
QString rutaDelGuion();

/// Absent when it is switched on; otherwise the sentence for the owner. Files that were written stay all the same.
/// Waits for the system manager: background threads only.
std::optional<QString> activar(const QString &udid, const QString &destino, qint64 cadaHoras = 3);
/// Script and log stay. Background threads only.
void desactivar();

/// The texts of the files, for their checks.
QString guion(const QString &udid, const QString &destino, const QString &info, const QString &herramienta);
QString servicio();
QString temporizador(qint64 cadaHoras);

} // namespace vellora::Automatico
