#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// What the backup tool's words mean. Pure functions, any thread.
namespace vellora
{

/// Overall percentage of a line such as "[====   ]  45% Finished"; no upper bound. The bar of the bytes of one batch
/// has no "Finished" and gives nothing.
std::optional<qint64> porcentajeGlobal(const QString &linea);

/// The looser form: any "45%".
std::optional<qint64> porcentajeEn(const QString &linea);

/// The log of a failed backup as one sentence for the owner.
QString explicar(const QStringList &lineas);

/// Without the line in which every run announces whether it will be encrypted, which is no trouble with a password.
QStringList sinElAnuncio(QStringList lineas);

/// The sentence for a log that holds one of the codes of idevicebackup2 1.3.0 whose cause is certain, or absent.
std::optional<QString> causaCierta(const QStringList &lineas);

/// What is said when the phone is no longer on the cable.
QString sentenciaDeIPhonePerdido();
/// What is said when the computer's disk is full.
QString sentenciaDeDiscoLleno();

} // namespace vellora
