#pragma once

#include "extraction/Conversacion.h"

#include <QAbstractListModel>

#include <optional>

namespace vellora
{

/// The messages of the chat in view, as rows. Each is taken apart when its row is shown.
class ModeloDeMensajes : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Papel { PapelMio = Qt::UserRole + 1, PapelQuien, PapelHora, PapelTexto, PapelDia, PapelColor };
    static constexpr int colores = 6;

    using QAbstractListModel::QAbstractListModel;

    void poner(const Mensajes &nuevos);

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    Mensajes mensajes;
};

/// The conversations of one folder: their list, the one in view, and what is done with it. Each is read when it is
/// first chosen, on a background thread, and kept. Main thread only.
class Conversaciones : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QString titulo READ titulo NOTIFY cambio)
    Q_PROPERTY(QString busqueda READ busqueda WRITE ponBusqueda NOTIFY cambio)
    Q_PROPERTY(QString mensaje READ mensaje NOTIFY cambio)
    Q_PROPERTY(bool cargando READ cargando NOTIFY cambio)
    Q_PROPERTY(bool vacia READ vacia NOTIFY cambio)
    Q_PROPERTY(bool haciendoPdf READ haciendoPdf NOTIFY cambio)
    Q_PROPERTY(int elegido READ filaElegida NOTIFY cambio)
    Q_PROPERTY(QString nombre READ nombre NOTIFY cambio)
    Q_PROPERTY(int cuantos READ cuantos NOTIFY cambio)
    Q_PROPERTY(vellora::ModeloDeMensajes *mensajes READ modeloDeMensajes CONSTANT)

public:
    enum Papel { PapelNombre = Qt::UserRole + 1, PapelInicial };

    explicit Conversaciones(QObject *padre = nullptr);

    const QString &titulo() const { return titulo_; }
    const QString &busqueda() const { return busqueda_; }
    /// What came of the last thing that was done.
    const QString &mensaje() const { return mensaje_; }
    bool cargando() const { return cargando_; }
    bool vacia() const { return chats.isEmpty(); }
    bool haciendoPdf() const { return haciendoPdf_; }
    int filaElegida() const;
    QString nombre() const;
    int cuantos() const;
    void ponBusqueda(const QString &texto);
    /// Those whose name fits the search, in the order of their files.
    QList<Conversacion> filtrados() const;
    ModeloDeMensajes *modeloDeMensajes() { return &enVista; }

    /// Lists a folder and shows its first chat, or that of `fichero`.
    void abrir(const QString &carpeta, const QString &titulo, const QString &fichero = {});
    Q_INVOKABLE void elegir(int fila);
    Q_INVOKABLE void copiarChat();
    Q_INVOKABLE void guardarChat(const QString &fichero);
    /// Draws the chat; `pdfHecho` asks for a place for it, which comes by `guardarPdf`.
    Q_INVOKABLE void exportarPDF();
    Q_INVOKABLE void guardarPdf(const QString &fichero);

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void cambio();
    void chatCargado();
    void pdfHecho();

private:
    void mostrar();
    void cargarChat();
    void avisar(const QString &texto);

    QString titulo_;
    QList<Conversacion> chats;
    QList<qsizetype> visibles; ///< of `chats`
    std::optional<qsizetype> elegido_;
    QString busqueda_;
    QString mensaje_;
    ModeloDeMensajes enVista;
    bool cargando_ = false;
    bool haciendoPdf_ = false;
    int vuelta = 0; ///< of the folder; what an earlier one brings late is dropped
    QByteArray pdf;
};

} // namespace vellora
