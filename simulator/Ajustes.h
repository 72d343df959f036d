#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace simulado
{

/// Answer of the owner to "Trust this computer?".
enum class Confianza { Si, Pendiente, No };

/// One phone as the state file or the order "anadir" describes it.
struct AjustesTelefono {
    QString udid;
    QString nombre;   ///< empty = the one in its contents
    QString producto; ///< e.g. "iPhone15,2"; empty = the one in its contents
    QString version;
    bool conectado = true;
    bool bloqueado = false;
    Confianza confianza = Confianza::Si;
    bool tls = true;
    bool porCable = true;
    bool porRed = false;
    QString contenido;  ///< the phone's own folder; empty = CONTENIDO/<UDID>
    bool ruido = false; ///< a stray identifier in the list, with nothing behind it
};

/// The command line.
struct Ajustes {
    QString socket;
    QString contenido;
    quint32 semilla = 1;
    QString tamano; ///< minimo, normal or grande
    bool soloGenerar = false;
    QList<AjustesTelefono> telefonos;
};

std::optional<Confianza> leerConfianza(const QString &texto);
/// Absent when the entry has no identifier or an unknown word; `motivo` then says why.
std::optional<AjustesTelefono> leerTelefono(const QJsonObject &entrada, QString &motivo);
/// The phone that exists when no state file is given.
AjustesTelefono telefonoDeMarta(quint32 semilla);
/// Reads --estado. Returns an error sentence, or empty.
QString leerEstado(const QString &ruta, QList<AjustesTelefono> &telefonos);

} // namespace simulado
