#pragma once

#include <QAbstractListModel>
#include <QStringList>

namespace vellora
{

/// A table of the result folder (";" between the columns, a heading first) as rows that are sorted and searched. Read
/// on a background thread. Main thread only.
class TablaDeFichero : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QString nombre READ nombre NOTIFY cambio)
    Q_PROPERTY(QStringList columnas READ columnas NOTIFY cambio)
    Q_PROPERTY(QString busqueda READ busqueda WRITE ponBusqueda NOTIFY cambio)
    Q_PROPERTY(int orden READ orden NOTIFY cambio)
    Q_PROPERTY(bool alReves READ alReves NOTIFY cambio)
    Q_PROPERTY(bool cargando READ cargando NOTIFY cambio)
    Q_PROPERTY(int total READ total NOTIFY cambio)
    Q_PROPERTY(int visibles READ visibles NOTIFY cambio)

public:
    enum Papel { PapelCeldas = Qt::UserRole + 1 };

    using QAbstractListModel::QAbstractListModel;

    const QString &nombre() const { return nombre_; }
    const QStringList &columnas() const { return columnas_; }
    const QString &busqueda() const { return busqueda_; }
    /// The column that it is sorted by; -1 for the file's own order.
    int orden() const { return orden_; }
    bool alReves() const { return alReves_; }
    bool cargando() const { return cargando_; }
    int total() const { return static_cast<int>(filas.size()); }
    int visibles() const { return static_cast<int>(ensenadas.size()); }

    void abrir(const QString &fichero);
    void ponBusqueda(const QString &texto);
    /// By that column: up, then down, then as the file has it.
    Q_INVOKABLE void ordenarPor(int columna);

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override { return {{PapelCeldas, "celdas"}}; }

signals:
    void cambio();

private:
    void mostrar();

    QString nombre_;
    QStringList columnas_;
    QList<QStringList> filas;
    QList<qsizetype> ensenadas;
    QString busqueda_;
    int orden_ = -1;
    bool alReves_ = false;
    bool cargando_ = false;
    int vuelta = 0;
};

/// What a cell is sorted by: the moment of a date ("dd/MM/yyyy HH:mm"), the value of a number, else the words.
QString claveDeOrden(const QString &celda);

} // namespace vellora
