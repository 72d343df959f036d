#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>

namespace vellora
{

/// A person of the phone's address book.
struct Contacto {
    Q_GADGET
    Q_PROPERTY(QString nombre MEMBER nombre)
    Q_PROPERTY(QString apellidos MEMBER apellidos)
    Q_PROPERTY(QString empresa MEMBER empresa)
    Q_PROPERTY(QStringList telefonos MEMBER telefonos)
    Q_PROPERTY(QStringList correos MEMBER correos)
    Q_PROPERTY(QString nota MEMBER nota)
    Q_PROPERTY(QString comoSeLlama READ comoSeLlama)

public:
    qint64 id = 0; ///< row of the person in the phone's database
    QString nombre;
    QString apellidos;
    QString empresa;
    QStringList telefonos; ///< as the owner typed them
    QStringList correos;
    QString nota;

    /// Name and family name, else the company, else "Sin nombre".
    QString comoSeLlama() const;
    bool operator==(const Contacto &) const = default;
};

namespace Extraccion
{

/// The people of AddressBook.sqlitedb under the unpacked folder, in the order of their names as a Spaniard sorts them.
QList<Contacto> leerContactos(const QString &desde);
/// Bytes of the photo of each person that has one, by row of the person: the full-size one, else the thumbnail.
QHash<qint64, QByteArray> fotosDeContactos(const QString &desde);
/// All people in one vCard 3.0 file. False when it could not be written.
bool guardarVCard(const QString &en, const QList<Contacto> &contactos);
/// The same as a table with ";" between the columns.
bool guardarContactosCSV(const QString &en, const QList<Contacto> &contactos);

} // namespace Extraccion

} // namespace vellora
