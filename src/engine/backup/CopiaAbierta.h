#pragma once

#include "core/BaseDeDatos.h"
#include "core/CarpetaDeDestino.h"
#include "core/Resultado.h"
#include "engine/backup/BolsaDeClaves.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

namespace vellora::motor
{

/// What Manifest.db tells of one file: its MBFile (an NSKeyedArchiver archive).
struct DatosDeFichero {
    qint64 tamano = 0;     ///< bytes, as the phone told; only an estimate of what the backup holds
    qint64 modificado = 0; ///< seconds since 1970, 0 when not told
    QByteArray clave;      ///< class and wrapped key; empty in a backup that is not encrypted
};
/// Absent when the archive cannot be read.
std::optional<DatosDeFichero> leerDatosDeFichero(const QByteArray &archivo);

/// Name of a file inside the folder of its backup, or empty when the identifier is none.
QByteArray nombreEnLaCopia(const QByteArray &id);

/// A backup whose list of files has been opened. Reading the list belongs to one thread; the keys, to any.
class CopiaAbierta
{
public:
    /// One line of the list, valid while its callback runs.
    struct Entrada {
        QByteArray id; ///< name in the backup: forty hexadecimal digits, in the folder of the first two
        QByteArray dominio;
        QByteArray ruta;    ///< as on the phone; nobody has looked at it yet
        QByteArray archivo; ///< for `leerDatosDeFichero`
    };
    using PedirContrasena = std::function<std::optional<QString>()>;
    /// What kept a backup closed. Only `Danada` says something of the backup itself.
    enum class Cierre { NoHay, Danada, SinClave, ClaveMala, SinTrabajo };

    /// `carpeta`: that of one backup. `contrasena` is asked for an encrypted one only. In `deTrabajo` the
    /// deciphered list stands, without a name, while it is read. `cierre` is set when it cannot be opened.
    static Resultado<CopiaAbierta> abrir(const QString &carpeta, const PedirContrasena &contrasena,
                                         const CarpetaDeDestino &deTrabajo, Cierre *cierre = nullptr);

    /// Every regular file, until `entrada` gives false. False when the list is damaged: what came before holds.
    bool porCadaFichero(const std::function<bool(const Entrada &)> &entrada) const;

    const QString &carpeta() const { return ruta; }
    bool cifrada() const { return cifrada_; }
    const ClavesDeClase &claves() const { return claves_; }

private:
    CopiaAbierta(QString laRuta, BaseDeDatos laLista) : ruta(std::move(laRuta)), lista(std::move(laLista)) {}

    QString ruta;
    BaseDeDatos lista;
    bool cifrada_ = false;
    ClavesDeClase claves_;
};

} // namespace vellora::motor
