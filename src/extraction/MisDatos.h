#pragma once

#include <QAbstractListModel>
#include <QDateTime>

namespace vellora
{

/// What has been taken out of the backup, one entry for each kind that is there, counted on a background thread. Main
/// thread only.
class MisDatos : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(bool mirando READ mirando NOTIFY cambio)
    Q_PROPERTY(int cuantos READ cuantos NOTIFY cambio)

public:
    /// What opens an entry.
    enum Clase { Chats, Tabla, Texto, Carpeta, Pagina };
    enum Papel { PapelTitulo = Qt::UserRole + 1, PapelIcono, PapelCuenta, PapelTamano, PapelFecha, PapelVerbo };

    struct Entrada {
        QString titulo;
        QString icono;
        Clase clase = Carpeta;
        QString ruta;
        QString cuenta; ///< "214 conversaciones"
        qint64 bytes = 0;
        QDateTime fecha; ///< when it was taken out
    };

    using QAbstractListModel::QAbstractListModel;

    bool mirando() const { return mirando_; }
    int cuantos() const { return static_cast<int>(entradas.size()); }
    void mirar(const QString &datos);
    /// Absent for a row that is not there.
    std::optional<Entrada> entrada(int fila) const;

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void cambio();

private:
    QList<Entrada> entradas;
    bool mirando_ = false;
};

} // namespace vellora
