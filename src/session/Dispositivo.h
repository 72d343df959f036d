#pragma once

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <optional>

namespace vellora
{

/// One connected iPhone, as its last reading told it.
struct Dispositivo {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString nombre MEMBER nombre)
    Q_PROPERTY(QString modelo READ modelo)
    Q_PROPERTY(QString sistema MEMBER sistema)
    Q_PROPERTY(QVariant bateria READ bateriaVariante)
    Q_PROPERTY(bool cargando MEMBER cargando)
    Q_PROPERTY(QVariant libresBytes READ libresVariante)
    Q_PROPERTY(QVariant totalBytes READ totalVariante)
    Q_PROPERTY(QString udidCorto READ udidCorto)

public:
    QString id;                    ///< UDID, as idevice_id prints it
    QString nombre;                ///< "DeviceName"
    QString modeloCrudo;           ///< "ProductType", or "desconocido"
    QString sistema;               ///< "ProductVersion", or "—"
    std::optional<qint64> bateria; ///< charge in percent
    bool cargando = false;
    std::optional<qint64> libresBytes; ///< free bytes on the phone
    std::optional<qint64> totalBytes;  ///< its capacity in bytes

    /// Commercial name, or `modeloCrudo` for a model that is not in the table.
    QString modelo() const;
    /// The last six characters of `id`.
    QString udidCorto() const { return id.right(6); }

    bool operator==(const Dispositivo &) const = default;

private:
    static QVariant variante(const std::optional<qint64> &valor) { return valor ? QVariant(*valor) : QVariant(); }
    QVariant bateriaVariante() const { return variante(bateria); }
    QVariant libresVariante() const { return variante(libresBytes); }
    QVariant totalVariante() const { return variante(totalBytes); }
};

} // namespace vellora

Q_DECLARE_METATYPE(vellora::Dispositivo)
