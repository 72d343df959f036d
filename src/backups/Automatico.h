#pragma once

#include <QString>

#include <optional>

/// The weekly backup, which runs with the program closed: a script, and a timer of the owner's own system manager
/// (systemd) that starts it every few hours. The script says nothing when the phone is not there, and otherwise has the
/// program make the backup without a window (`CopiaSemanal`), which leaves one that is younger than a week as it is.
/// The timer's file is the state; it holds the phone and the folder that were chosen when it was switched on.
namespace vellora::Automatico
{

const QString &etiqueta();
constexpr qint64 diasEntreCopias = 7;

/// Whether the timer's file is there. Any thread.
bool activa();
/// The log of the script; empty when it cannot be read.
QString registro();
/// What came of the last run, as a sentence; empty without one. Reads the log: background threads only.
QString ultimoResultado();
/// Folder of the script, its log and what else the weekly backup keeps.
QString carpetaDeApoyo();
/// What the log says of a run after its moment, "2026-05-03 21:04  ".
inline QString fraseDeEmpezar()
{
    return QStringLiteral("Empiezo la copia automática");
}
inline QString fraseDeBien()
{
    return QStringLiteral("Copia terminada bien");
}
inline QString fraseDeSinComprobar()
{
    return QStringLiteral("Copia terminada, pero sin comprobar");
}
inline QString fraseDeFallo()
{
    return QStringLiteral("La copia falló (el iPhone pudo quedarse bloqueado)");
}
QString rutaDelGuion();

/// Absent when it is switched on; otherwise the sentence for the owner. Files that were written stay all the same.
/// Waits for the system manager: background threads only.
std::optional<QString> activar(const QString &udid, const QString &destino, qint64 cadaHoras = 3);
/// Script and log stay. Background threads only.
void desactivar();

/// The texts of the files, for their checks.
QString guion(const QString &udid, const QString &destino, const QString &info, const QString &programa);
QString servicio();
QString temporizador(qint64 cadaHoras);

} // namespace vellora::Automatico
