#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace vellora
{

/// A person as the computer's address book is told of one.
struct FichaDeAgenda {
    QString nombre;
    QString apellidos;
    QString empresa;
    QStringList telefonos;
    QStringList correos;
    bool operator==(const FichaDeAgenda &) const = default;
};

/// The address book of the owner's desktop. Everything here blocks, by up to a few seconds when its service has to be
/// started first: background threads only, one call at a time.
///
/// What speaks to the service is loaded on first use, from the program's "PlugIns": a computer without one runs the
/// program all the same. A failure is the sentence for the owner; an absent one means success.
namespace AgendaDelMac
{

/// Whether there is an address book that lets us in.
bool pedirPermiso();

/// Whether a person is there already with these names and all of these telephones and addresses.
bool yaEsta(const FichaDeAgenda &ficha);

/// Adds a person.
std::optional<QString> guardar(const FichaDeAgenda &ficha);

/// The first person with the same name and family name, unless both are empty, or with one of the telephones (their
/// digits). Absent without one, and when the address book cannot be read.
std::optional<FichaDeAgenda> encontrarParecido(const QString &nombre, const QString &apellidos,
                                               const QStringList &telefonos);
/// The same by the data of a record.
std::optional<FichaDeAgenda> buscar(const FichaDeAgenda &ficha);

/// Gives the person found by `original` the data of `nueva`. Telephones and addresses that `original` does not name
/// stay. The sentence also when nobody is found.
std::optional<QString> actualizar(const FichaDeAgenda &original, const FichaDeAgenda &nueva);

struct Borrado {
    bool estaba = false; ///< somebody was found
    std::optional<QString> fallo;
};
/// Deletes the person found by `ficha`.
Borrado borrar(const FichaDeAgenda &ficha);

/// The characters of a number that are digits: numbers are the same when these are. Here, for the loaded part too.
inline QString soloCifras(const QString &numero)
{
    QString cifras;
    for (const auto letra : numero) {
        if (letra.isNumber())
            cifras += letra;
    }
    return cifras;
}

} // namespace AgendaDelMac

/// What the loaded part offers. Identifiers are its own.
class LibretaDelEscritorio
{
public:
    struct Persona {
        QString id;
        FichaDeAgenda ficha;
    };

    virtual ~LibretaDelEscritorio() = default;
    virtual bool abrir() = 0;
    virtual bool anadir(const FichaDeAgenda &ficha) = 0;
    /// All of them; absent when they cannot be read.
    virtual std::optional<QList<Persona>> todas() = 0;
    /// Takes `sobran` away from the telephones and addresses of the person, and adds those of `ficha`; the names are
    /// replaced.
    virtual bool cambiar(const QString &id, const FichaDeAgenda &ficha, const FichaDeAgenda &sobran) = 0;
    virtual bool quitar(const QString &id) = 0;
};

} // namespace vellora
