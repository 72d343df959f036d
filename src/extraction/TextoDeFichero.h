#pragma once

#include <QAbstractListModel>
#include <QByteArray>

#include <vector>

namespace vellora
{

/// A text of the result folder as its lines, empty ones too, each taken out when it is shown. Read on a background
/// thread. Main thread only.
class TextoDeFichero : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QString nombre READ nombre NOTIFY cambio)
    Q_PROPERTY(bool cargando READ cargando NOTIFY cambio)
    Q_PROPERTY(int cuantas READ cuantas NOTIFY cambio)

public:
    enum Papel { PapelTexto = Qt::UserRole + 1 };

    using QAbstractListModel::QAbstractListModel;

    const QString &nombre() const { return nombre_; }
    bool cargando() const { return cargando_; }
    int cuantas() const { return static_cast<int>(principios.size()); }
    void abrir(const QString &fichero);

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override { return {{PapelTexto, "texto"}}; }

signals:
    void cambio();

private:
    QString nombre_;
    QByteArray texto;
    std::vector<qsizetype> principios;
    bool cargando_ = false;
    int vuelta = 0;
};

} // namespace vellora
