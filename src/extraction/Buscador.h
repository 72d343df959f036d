#pragma once

#include "extraction/BuscadorGlobal.h"

#include <QAbstractListModel>

namespace vellora
{

class Modelo;

/// The one box that looks through everything saved: what was asked for last, and what came of it. The search runs on
/// background threads; one that was asked for earlier and comes later still takes the place of what is shown. Main
/// thread only.
class Buscador : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QString buscado READ buscado NOTIFY cambio)
    Q_PROPERTY(bool buscando READ buscando NOTIFY cambio)
    Q_PROPERTY(double avance READ avance NOTIFY avanceCambio)
    Q_PROPERTY(int cuantos READ cuantos NOTIFY cambio)

public:
    enum Papel { PapelTipo = Qt::UserRole + 1, PapelTitulo, PapelExtracto, PapelIcono };

    explicit Buscador(Modelo &elModelo, QObject *padre = nullptr);

    /// What the results are of; empty before the first search.
    const QString &buscado() const { return buscado_; }
    bool buscando() const { return enMarcha > 0; }
    double avance() const { return avance_; }
    int cuantos() const { return static_cast<int>(resultados_.size()); }
    const QList<ResultadoGlobal> &resultados() const { return resultados_; }

    void olvidar();
    /// Nothing happens with fewer than two letters.
    Q_INVOKABLE void buscar(const QString &texto);
    /// Asks for the view of that row by one of the signals.
    Q_INVOKABLE void abrir(int fila);

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void cambio();
    void avanceCambio();
    void verChats(const QString &fichero);
    void verTabla(const QString &fichero);
    void verTexto(const QString &fichero);

private:
    Modelo &modelo;
    QList<ResultadoGlobal> resultados_;
    QString buscado_;
    int enMarcha = 0;
    double avance_ = 0;
};

} // namespace vellora
