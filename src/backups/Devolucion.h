#pragma once

#include "backups/Catalogo.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariantList>

#include <optional>

namespace vellora
{

class Consentimiento;
class Modelo;

/// A backup that could be put back on a phone.
struct CopiaParaDevolver {
    QString carpetaCopias; ///< folder of backups that it stands in
    QString udid;          ///< of the phone that it was made of; the name of its folder
    QString deQuien;       ///< name of that phone, as the backup tells it; else the name of the owner's folder
    QDateTime fecha;
    qint64 bytes = 0; ///< of all its files
    Catalogo::Clase clase = Catalogo::Clase::NoHay;

    QString carpeta() const { return carpetaCopias + u'/' + udid; }
};

/// The backups, earlier ones too, of these folders of backups, those of `udid` first and the youngest first. Counts
/// every file: background threads only.
QList<CopiaParaDevolver> copiasParaDevolver(const QStringList &carpetas, const QString &udid);

/// What must hold before a backup is put back: it is still the one that was shown, finished, and nobody else is at work
/// on it. A sentence for the owner when it does not. Any thread; some small reads.
std::optional<QString> porQueNoSeDevuelve(const CopiaParaDevolver &copia);

/// The owner's request to put a backup back on the selected phone: which one, when there are several or it is another
/// phone's, then the one consent. Belongs to the phone that was selected when it was made, and closes with it. Main
/// thread only.
class Devolucion : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool eligiendo READ eligiendo NOTIFY cambio)
    Q_PROPERTY(bool mirando READ mirando NOTIFY cambio)
    Q_PROPERTY(QString paraQuien READ paraQuien NOTIFY cambio)
    Q_PROPERTY(QVariantList copias READ filas NOTIFY cambio)

public:
    Devolucion(Modelo &elModelo, Consentimiento &elConsentimiento, QObject *padre = nullptr);

    /// Whether the sheet is open in which a backup is chosen.
    bool eligiendo() const { return !udid.isEmpty(); }
    /// The disk is being looked through.
    bool mirando() const { return mirando_; }
    /// Name of the phone that it is for; empty unless the sheet is open.
    const QString &paraQuien() const { return paraQuien_; }
    const QList<CopiaParaDevolver> &copias() const { return copias_; }

    Q_INVOKABLE void pedir();
    /// The question about the backup of this row follows.
    Q_INVOKABLE void elegir(int fila);
    Q_INVOKABLE void cerrar();

signals:
    void cambio();

private:
    /// For the sheet: "titulo" and "detalle" of each, and "vale" where it can be chosen.
    QVariantList filas() const;
    void halladas(const QList<CopiaParaDevolver> &lista);
    void preguntar(const CopiaParaDevolver &copia, const QString &suUdid);

    Modelo &modelo;
    Consentimiento &consentimiento;
    QString udid; ///< of the phone that it is for, while the sheet is open
    QString paraQuien_;
    QList<CopiaParaDevolver> copias_;
    bool mirando_ = false;
};

} // namespace vellora
