#pragma once

#include <QAbstractListModel>
#include <QSet>
#include <QTimer>
#include <QUuid>

#include <functional>
#include <optional>
#include <variant>

namespace vellora
{

class Modelo;
class Tarea;

/// One saved password of the phone.
struct ClaveGuardada {
    QUuid id;
    QString tipo; ///< "wifi", "internet" or "app"
    QString donde;
    QString usuario;
    QString clave;

    QString icono() const;
    QString comoSeLlama() const; ///< the kind, in words
};

struct ClavesListas {
    QList<ClaveGuardada> claves;
    qint64 cerradas = 0; ///< bound to the phone: no backup gives them
};
struct FalloDeClaves {
    QString motivo;
};
struct CopiaSinCifrar {
};
using ResultadoClaves = std::variant<ClavesListas, FalloDeClaves, CopiaSinCifrar>;

/// Reads the passwords out of the encrypted backup of that phone, as the job. The engine takes the backup's password
/// from the secret store itself, and says when it is absent, wrong, or behind a store that is locked. `resultado` is
/// called once, unless the job is cancelled. Nothing of what is read goes to the log or the journal. Main thread.
void leerContrasenas(Tarea &tarea, const QString &carpetaCopias, const QString &udid,
                     const std::function<void(const ResultadoClaves &)> &resultado);

/// All passwords as a table that only its owner can open. The sentence of the failure; absent when it was written.
std::optional<QString> exportarContrasenas(const QList<ClaveGuardada> &claves, const QString &fichero);

/// The passwords as the window shows them: read when asked for, each hidden until it is asked for. Main thread only.
class Contrasenas : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QString estado READ estado NOTIFY cambio)
    Q_PROPERTY(QString fallo READ fallo NOTIFY cambio)
    Q_PROPERTY(QString mensaje READ mensaje NOTIFY cambio)
    Q_PROPERTY(QString busqueda READ busqueda WRITE ponBusqueda NOTIFY cambio)
    Q_PROPERTY(QString filtro READ filtro WRITE ponFiltro NOTIFY cambio)
    Q_PROPERTY(int cuantas READ cuantas NOTIFY cambio)
    Q_PROPERTY(int cerradas READ cerradas NOTIFY cambio)

public:
    enum Papel { PapelDonde = Qt::UserRole + 1, PapelTipo, PapelUsuario, PapelIcono, PapelClave, PapelVisible };
    static constexpr int segundosEnElPortapapeles = 30;

    explicit Contrasenas(Modelo &elModelo, QObject *padre = nullptr);
    ~Contrasenas() override;

    /// "empezando", "sincifrar", "fallo" or "listas".
    const QString &estado() const { return estado_; }
    const QString &fallo() const { return fallo_; }
    const QString &mensaje() const { return mensaje_; }
    const QString &busqueda() const { return busqueda_; }
    /// Empty for all, or one kind.
    const QString &filtro() const { return filtro_; }
    int cuantas() const { return static_cast<int>(claves.size()); }
    int cerradas() const { return static_cast<int>(cerradas_); }
    void ponBusqueda(const QString &texto);
    void ponFiltro(const QString &tipo);

    Q_INVOKABLE void leer();
    /// What a reading came to.
    void aplicar(const ResultadoClaves &resultado);
    Q_INVOKABLE void exportar(const QString &fichero);
    Q_INVOKABLE void ver(int fila, bool visible);
    /// To the clipboard, as a secret, from which it goes after half a minute.
    Q_INVOKABLE void copiar(int fila);
    Q_INVOKABLE void guardarEnElLlavero(int fila);
    /// Forgets everything: the lock has closed, or another phone came.
    Q_INVOKABLE void olvidar();

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void cambio();

private:
    void mostrar();
    void avisar(const QString &texto);
    void limpiarPortapapeles();

    Modelo &modelo;
    QList<ClaveGuardada> claves;
    QList<qsizetype> ensenadas; ///< of `claves`, those that fit search and filter
    QSet<QUuid> visibles;
    QString estado_;
    QString fallo_;
    QString mensaje_;
    QString busqueda_;
    QString filtro_;
    qint64 cerradas_ = 0;
    int vuelta = 0; ///< of the reading; what an earlier one brings late is dropped
    QString enElPortapapeles;
    QTimer reloj;
};

} // namespace vellora
