#pragma once

#include "engine/device/Telefono.h"

#include <QDateTime>
#include <QStringList>

#include <functional>
#include <libimobiledevice/afc.h>

namespace vellora::motor
{

/// What the phone tells of a file.
struct FichaAfc {
    enum class Tipo { Fichero, Carpeta, Enlace, Otro };
    Tipo tipo = Tipo::Otro;
    qint64 tamano = 0;
    QDateTime modificado; ///< in UTC, to the millisecond
    // Nanoseconds since 1970; 0 when not told.
    qint64 nacimiento = 0;
    qint64 modificacion = 0;
    // Of no interest for what stands in a file: the phone may lay it out anew.
    qint64 bloques = 0;
    qint64 enlaces = 0;
    /// Nothing was written to the file between the two.
    bool operator==(const FichaAfc &otra) const
    {
        return tipo == otra.tipo && tamano == otra.tamano && nacimiento == otra.nacimiento &&
               modificacion == otra.modificacion;
    }
    /// Nothing at all that the phone tells of it has changed.
    bool identica(const FichaAfc &otra) const
    {
        return *this == otra && bloques == otra.bloques && enlaces == otra.enlaces;
    }
};

/// A path of the phone. Bytes that are no UTF-8 stand in it as lone surrogates (U+DC80 to U+DCFF), so that the phone is
/// asked for the very name that it gave.
QString rutaDe(QByteArrayView bytes);
QByteArray bytesDeRuta(const QString &ruta);

/// Files of the phone, over its file service (AFC): those of the camera roll, of an app, or the crash reports. Paths
/// begin with "/" and are the phone's; what it answers may be any name, a hostile one too. One thread.
class Afc
{
public:
    /// The camera roll and what is around it (`/DCIM`, `/PhotoData`).
    static Resultado<Afc> abrir(const Telefono &telefono);
    /// The folder `/Documents` of an app that shares it.
    static Resultado<Afc> documentosDe(const Telefono &telefono, const QString &app);
    /// The crash reports, once the phone has put them in their place.
    static Resultado<Afc> informesDeFallos(const Telefono &telefono);

    /// Names in a folder, without "." and "..", in the phone's order.
    Resultado<QStringList> listar(const QString &carpeta);
    Resultado<FichaAfc> ficha(const QString &ruta);
    using Recibe = std::function<bool(QByteArrayView)>;
    /// Gives the file in pieces of at most 256 KiB until the end that it had at the beginning, or until `recibe`
    /// answers false. The bytes given. What was given is the file only when this succeeds: libimobiledevice 1.3.0 takes
    /// a cable pulled out inside an answer for the answer, so that the phone is asked once more at the end; and a file
    /// that was written to meanwhile fails.
    Resultado<qint64> leer(const QString &ruta, const Recibe &recibe);
    /// The same of a file whose facts are at hand: it fails too when they no longer hold.
    Resultado<qint64> leer(const QString &ruta, const FichaAfc &como, const Recibe &recibe);
    /// Writes a file anew with the pieces that `da` answers, until an empty one. The bytes written. After a failure
    /// what was written stays in the phone.
    Resultado<qint64> escribir(const QString &ruta, const std::function<QByteArray()> &da);
    // These four give why it could not be done; absent when it is.
    std::optional<QString> crearCarpeta(const QString &ruta);
    std::optional<QString> renombrar(const QString &desde, const QString &a);
    /// A file, or an empty folder.
    std::optional<QString> borrar(const QString &ruta);
    std::optional<QString> borrarConLoDeDentro(const QString &ruta);

    /// Asks anything: only the next answer proves that the end of the last one was not cut off. Absent when the phone
    /// answers.
    std::optional<QString> comprobar() { return hecho(confirmar(), {}); }

    /// The phone is gone: nothing more can be asked of it.
    bool perdido() const { return sinTelefono; }
    /// The last failure: what was asked for is not in the phone.
    bool faltaba() const { return noEstaba; }

private:
    using Cliente = std::unique_ptr<afc_client_private, Cierra<afc_client_free>>;
    // House arrest lends its connection and frees it; after the file service that goes over it.
    using Casa = std::shared_ptr<void>;
    explicit Afc(Cliente elCliente, Casa laCasa = {}) : casa(std::move(laCasa)), cliente(std::move(elCliente)) {}
    static Resultado<Afc> abrir(const Telefono &telefono, const char *servicio);
    QString motivoDe(afc_error_t error, const QString &ruta);
    std::optional<QString> hecho(afc_error_t error, const QString &ruta);
    /// Whether the phone still answers, after an answer whose end only its next one proves.
    afc_error_t confirmar();

    Casa casa;
    Cliente cliente;
    bool sinTelefono = false;
    bool noEstaba = false;
};

} // namespace vellora::motor
