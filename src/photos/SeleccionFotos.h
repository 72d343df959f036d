#pragma once

#include "photos/ElegidasDelCarrete.h"
#include "photos/Galeria.h"

#include <QAbstractListModel>
#include <QUrl>

#include <memory>

namespace vellora
{

class Consentimiento;
class Modelo;

/// The phone's roll as a person looks through it: the photos on show, in rows, and those marked. Main thread only.
class SeleccionFotos : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QString filtro READ filtro WRITE ponFiltro NOTIFY cambio)
    Q_PROPERTY(QString orden READ orden WRITE ponOrden NOTIFY cambio)
    Q_PROPERTY(QString busqueda READ busqueda WRITE ponBusqueda NOTIFY cambio)
    Q_PROPERTY(bool abierta READ abierta NOTIFY cambio)
    Q_PROPERTY(bool cargando READ cargando NOTIFY cambio)
    Q_PROPERTY(bool noSeLee READ noSeLee NOTIFY cambio)
    Q_PROPERTY(int cuantos READ cuantos NOTIFY cambio)
    Q_PROPERTY(int visibles READ rowCountPropiedad NOTIFY cambio)
    Q_PROPERTY(int marcados READ cuantosMarcados NOTIFY marcasCambio)
    Q_PROPERTY(QString pesoMarcado READ pesoMarcadoTexto NOTIFY marcasCambio)
    Q_PROPERTY(int sinCopiarMarcados READ sinCopiarMarcados NOTIFY marcasCambio)

public:
    enum Papel {
        PapelId = Qt::UserRole + 1,
        PapelNombre,
        PapelMiniatura,
        PapelVideo,
        PapelVivo,
        PapelRetocada,
        PapelCopiado,
        PapelEstado,
        PapelMarcada,
        PapelPeso
    };

    SeleccionFotos(Modelo &elModelo, Consentimiento &elConsentimiento, QObject *padre = nullptr);

    const QString &filtro() const { return filtro_; }
    const QString &orden() const { return orden_; }
    const QString &busqueda() const { return busqueda_; }
    /// "", "fotos", "videos", "vivas", "retocadas", "copiadas", "sincopiar" or "papelera".
    void ponFiltro(const QString &cual);
    /// "nombre", "peso" or "tipo".
    void ponOrden(const QString &cual);
    /// Part of a name, capitals or not.
    void ponBusqueda(const QString &texto);

    bool abierta() const { return abierta_; }
    bool cargando() const { return cargando_; }
    /// The last reading failed; the job's log says why.
    bool noSeLee() const { return noSeLee_; }
    int cuantos() const { return static_cast<int>(elementos->size()); }
    int cuantosMarcados() const { return static_cast<int>(marcados.size()); }
    qint64 pesoMarcado() const { return peso; }
    int sinCopiarMarcados() const { return sinCopiar; }
    QStringList rutasMarcadas() const;

    /// Opens the view and reads the roll of the selected phone; a job that runs is waited for.
    Q_INVOKABLE void abrir();
    Q_INVOKABLE void cerrar();
    Q_INVOKABLE void leer();
    Q_INVOKABLE void marcar(int fila);
    Q_INVOKABLE void marcarTodas();
    Q_INVOKABLE void ninguna();
    /// Asks before what is marked leaves the phone; what the owner marks or unmarks meanwhile takes the question back.
    Q_INVOKABLE void pedirBorrar();

    /// What a row's photo is drawn from, large: its copy where there is one, else its small picture.
    Q_INVOKABLE QUrl imagenGrande(int fila) const;
    /// Name, size and what it is, in words.
    Q_INVOKABLE QString descripcion(int fila) const;

    /// The row's photo; absent when there is no such row.
    const ElementoGaleria *elemento(int fila) const;

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void cambio();
    void marcasCambio();

private:
    /// How a deletion that failed stood in the strip.
    struct Fallo {
        QString titulo;
        QString detalle;
        QStringList registro;
    };
    using Elementos = QList<ElementoGaleria>;

    int rowCountPropiedad() const { return rowCount(); }
    QString pesoMarcadoTexto() const;
    void acabada(bool bien);
    void reordenar();
    void ponMarca(const ElementoGaleria &uno, bool puesta);
    void llegada(const QString &ruta);
    void olvidar();
    ElegidasParaBorrar elegidasParaBorrar() const;
    void borrar(const ElegidasParaBorrar &elegidas);

    Modelo &modelo;
    Consentimiento &consentimiento;
    mutable Galeria galeria; ///< asked for pictures by reading rows
    std::shared_ptr<const Elementos> elementos = std::make_shared<Elementos>();
    QList<int> filas; ///< places in `elementos`
    QHash<QString, int> filaDeRuta;
    QSet<QString> marcados;
    qint64 peso = 0;
    int sinCopiar = 0;
    QString udid;    ///< of the phone whose roll this is
    QString carpeta; ///< that it was compared with
    QString alQuitarLaLista;
    QString filtro_;
    QString orden_ = QStringLiteral("nombre");
    QString busqueda_;
    bool abierta_ = false;
    bool cargando_ = false;
    bool noSeLee_ = false;
    std::optional<Fallo> fallo;
    bool borrando = false;
    bool porLeer = false; ///< once the job that runs is over
    int vuelta = 0;       ///< of `reordenar`: an earlier one that comes later is dropped
};

} // namespace vellora
