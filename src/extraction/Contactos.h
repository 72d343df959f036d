#pragma once

#include "extraction/Contacto.h"
#include "platform/AgendaDelMac.h"

#include <QAbstractListModel>
#include <QMutex>

#include <optional>

namespace vellora
{

class Modelo;

/// The phone's address book as the window shows it: those that fit the search, the one that is chosen, and what is done
/// with them. Nothing of the phone or its backup is ever changed; creating, changing and deleting happen in the
/// computer's own address book. Main thread only, but for `foto`.
class Contactos : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(bool cargando READ cargando NOTIFY cambio)
    Q_PROPERTY(bool esperando READ esperando NOTIFY cambio)
    Q_PROPERTY(bool vacia READ vacia NOTIFY cambio)
    Q_PROPERTY(bool yaMire READ yaMire NOTIFY cambio)
    Q_PROPERTY(QString motivo READ motivoTexto NOTIFY cambio)
    Q_PROPERTY(QString aviso READ aviso NOTIFY cambio)
    Q_PROPERTY(QString busqueda READ busqueda WRITE ponBusqueda NOTIFY cambio)
    Q_PROPERTY(int elegido READ filaElegida NOTIFY cambio)
    Q_PROPERTY(vellora::Contacto ficha READ ficha NOTIFY cambio)
    Q_PROPERTY(QString fotoElegida READ fotoElegida NOTIFY cambio)
    Q_PROPERTY(QString falloAlGuardar READ falloAlGuardar NOTIFY cambio)
    Q_PROPERTY(bool guardando READ guardando NOTIFY cambio)
    Q_PROPERTY(vellora::Contactos::Hojas hoja READ hoja NOTIFY cambio)

public:
    enum Papel { PapelNombre = Qt::UserRole + 1, PapelDetalle, PapelFoto };
    enum Formato { VCard, Hoja };
    Q_ENUM(Formato)
    /// The sheet that is open over the list.
    enum Hojas { SinHoja, Nuevo, Editar, Borrar };
    Q_ENUM(Hojas)

    /// Whether bytes are an image that can be shown. Any thread.
    using EsImagen = bool (*)(const QByteArray &);
    Contactos(Modelo &elModelo, EsImagen elEsImagen, QObject *padre = nullptr);

    const QList<Contacto> &lista() const { return lista_; }
    /// Those that fit the search, in the list's order.
    QList<Contacto> filtrados() const;
    bool cargando() const { return cargando_; }
    /// A job runs, which may be making the very backup; they are read when it has ended.
    bool esperando() const { return esperando_; }
    bool vacia() const { return lista_.isEmpty(); }
    bool yaMire() const { return yaMire_; }
    /// Why the list is empty.
    const std::optional<QString> &motivo() const { return motivo_; }
    const QString &aviso() const { return aviso_; }
    const QString &busqueda() const { return busqueda_; }
    void ponBusqueda(const QString &texto);
    Contacto ficha() const { return elegido_.value_or(Contacto()); }
    int filaElegida() const;
    /// Why the last saving failed; empty when it did not.
    const QString &falloAlGuardar() const { return falloAlGuardar_; }
    bool guardando() const { return guardando_; }
    /// Bytes of somebody's photo; empty without one. Any thread.
    QByteArray foto(qint64 id) const;

    /// Reads what has been taken out; where that is nothing, or older than the backup, lets the engine take it out.
    Q_INVOKABLE void leer();
    /// What has been read may be old: it is read again when it is next looked at.
    void caducar() { yaMire_ = false; }
    /// Another phone came.
    void olvidar();
    Q_INVOKABLE void elegir(int fila);
    Q_INVOKABLE void exportar(vellora::Contactos::Formato formato, const QString &fichero);
    Q_INVOKABLE void copiarAlMac();
    Q_INVOKABLE void borrarContacto();
    /// A new person, or with `editar` the chosen one with other data. The sheet closes when it went well.
    Q_INVOKABLE void guardar(bool editar, const QString &nombre, const QString &apellidos, const QString &empresa,
                             const QString &telefono, const QString &correo);
    Hojas hoja() const { return hoja_; }
    Q_INVOKABLE void abrirHoja(vellora::Contactos::Hojas cual);
    /// "llamar", "mensaje", "whatsapp", "faceTime" or "correo".
    Q_INVOKABLE static void contactar(const QString &como, const QString &conQuien);

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;

signals:
    void cambio();

private:
    struct Leido {
        QList<Contacto> lista;
        QHash<qint64, QByteArray> fotos;
        std::optional<QString> fallo; ///< why nothing new could be taken out, or what is there is empty
    };

    void seguirEsperando();
    static Leido leerDe(const QString &udid, const QString &copias, const QString &datos, EsImagen esImagen);

    QString motivoTexto() const { return motivo_.value_or(QString()); }
    QString fotoElegida() const { return elegido_ ? direccionDeFoto(elegido_->id) : QString(); }
    QString direccionDeFoto(qint64 id) const;
    void mostrar();
    void aplicar(const Leido &leido);
    void avisar(const QString &texto);
    FichaDeAgenda comoFicha(const Contacto &contacto) const;

    Modelo &modelo;
    EsImagen esImagen;
    QList<Contacto> lista_;
    QList<Contacto> visibles;
    std::optional<Contacto> elegido_;
    QString busqueda_;
    std::optional<QString> motivo_;
    QString aviso_;
    QString falloAlGuardar_;
    bool cargando_ = false;
    bool esperando_ = false;
    bool yaMire_ = false;
    bool guardando_ = false;
    Hojas hoja_ = SinHoja;
    int vuelta = 0; ///< of the reading: what an earlier one brings late is dropped, and photos have another address
    mutable QMutex cerrojo;
    QHash<qint64, QByteArray> fotos;
};

} // namespace vellora
