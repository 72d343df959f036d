#pragma once

#include "core/CerrojoDelDiario.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QFileSystemWatcher>
#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include <optional>

namespace vellora
{

/// One job of the journal.
struct Actividad {
    enum class Estado { EnMarcha, Bien, Mal, Cancelada };

    QUuid id;
    QString titulo;
    QString detalle;
    Estado estado = Estado::EnMarcha;
    QDateTime empezo;
    std::optional<QDateTime> termino; ///< absent while it runs, or when the program was closed before its end
    std::optional<QString> carpeta;   ///< folder of the result

    /// Symbol of the state.
    QString icono() const;
    /// "hoy a las 20:05", or "22 nov, 20:05", in the owner's time zone.
    QString cuandoEnPalabras() const;
    /// Absent while `termino` is.
    std::optional<QString> duracion() const;

    bool operator==(const Actividad &) const = default;
};

/// What the program has done, newest first, kept across runs in "Vellora/actividad.json" under the home folder.
///
/// The file is a compact JSON array of objects with the keys id, titulo, detalle, estado ("enMarcha", "bien", "mal",
/// "cancelada"), empezo, termino and carpeta, in this order; dates are seconds since 2001-01-01 UTC; keys without a
/// value are left out. Main thread only.
///
/// Several programs write to one file. Each knows which entries it began: it writes those as it has them, all others
/// as they stand in the file, under a lock; what the others write shows here soon after. A malformed entry is left out;
/// a file that is no journal is set aside under another name at the next writing, and an entry tells of it. A failure
/// to write does not reach the owner: the entries stay in memory for the next time.
class Diario : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int enMarcha READ enMarcha NOTIFY cambio)
    Q_PROPERTY(int fallidas READ fallidas NOTIFY cambio)
    Q_PROPERTY(int cuantas READ cuantas NOTIFY cambio)

public:
    enum Papel {
        PapelTitulo = Qt::UserRole + 1,
        PapelDetalle,
        PapelEstado,
        PapelIcono,
        PapelCuando,
        PapelDuracion,
        PapelCarpeta
    };
    static constexpr int maximo = 120;

    /// Reads the file; entries that were left open by a program that has ended become "cancelada", "Se cerró la app".
    explicit Diario(const QString &fichero = ficheroPorDefecto(), QObject *padre = nullptr);
    static QString ficheroPorDefecto();

    const QList<Actividad> &lista() const { return actividades; }

    QUuid empezar(const QString &titulo);
    /// Changes the text of a running entry; kept in memory until the next `empezar` or `terminar`.
    void actualizar(const QUuid &id, const QString &detalle);
    void terminar(const QUuid &id, bool bien, const QString &detalle, const std::optional<QString> &carpeta);
    /// The failures up to now do not count in `fallidas` any more; remembered until the program ends.
    Q_INVOKABLE void darPorVisto();
    Q_INVOKABLE void borrarTodo();

    int enMarcha() const;
    int fallidas() const;
    int cuantas() const { return static_cast<int>(actividades.size()); }

    /// Roles for the view: titulo, detalle, estado, icono, cuando, duracion ("" when absent), carpeta ("" when absent).
    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void cambio();

private:
    enum class Lista { Junta, Vacia };
    /// What the file holds, without those of this program that it has dropped.
    QList<Actividad> delFichero();
    /// This program's entries with those of the file.
    QList<Actividad> junta();
    void poner(const QList<Actividad> &nueva);
    void guardar(Lista como = Lista::Junta);
    void releer();
    qsizetype posicion(const QUuid &id) const;
    void filaCambiada(qsizetype fila);

    QString fichero;
    CerrojoDelDiario cerrojo;
    QFileSystemWatcher vigia; ///< of the folder: the file is another one after each writing
    QList<Actividad> actividades;
    QSet<QUuid> propias;             ///< begun by this program
    std::optional<Actividad> aviso_; ///< of a file that is no journal
    QSet<QUuid> vistas;
};

} // namespace vellora
