#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QStringList>
#include <qqmlregistration.h>

#include <optional>

namespace vellora
{

/// The sections of the window, as rows in the order of the side list, each with the heading that stands above it.
class Secciones : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    /// The order sets the shortcuts, which are not in the order of the side list.
    enum Seccion {
        Resumen,
        Fotos,
        BuscarFotos,
        Copias,
        BuscarTodo,
        Personas,
        Numeros,
        Apps,
        Contactos,
        Claves,
        Seguridad,
        Familia,
        Espacio,
        Pantalla,
        Control,
        Limpieza,
        Ajustes,
        Ayuda,
        Actualizar
    };
    Q_ENUM(Seccion)

    /// What stands in the window's content.
    enum Contenido { FaltanHerramientas, SinIPhone, LaSeccion };
    Q_ENUM(Contenido)

    enum Papel {
        PapelSeccion = Qt::UserRole + 1,
        PapelTitulo,
        PapelSimbolo,
        PapelCabecera,
        PapelAtajo,
        PapelNecesitaCopia,
        PapelDisponible
    };

    struct Grupo {
        QString cabecera; ///< empty for the first group, which has none
        QList<Seccion> secciones;
    };

    explicit Secciones(QObject *padre = nullptr) : QAbstractListModel(padre) {}

    static const QList<Grupo> &grupos();
    static QString titulo(Seccion seccion);
    static QString simbolo(Seccion seccion);
    static bool necesitaElIPhone(Seccion seccion);
    static bool necesitaCopia(Seccion seccion);
    /// The digit that opens it with Ctrl; absent from the tenth on.
    static std::optional<QString> atajo(Seccion seccion);
    static bool disponible(Seccion seccion);

    Q_INVOKABLE static vellora::Secciones::Contenido contenido(vellora::Secciones::Seccion seccion,
                                                               bool hayHerramientas, bool hayIPhone);
    /// The section that Ctrl and this key (Qt::Key) open; -1 when there is none, or it is still to come.
    Q_INVOKABLE static int porAtajo(int tecla);
    /// The section to begin with, of the one in view last time.
    Q_INVOKABLE static int deInicio(int seccion);
    /// The file of the section's view, which takes the property `programa`; empty while it is still to come.
    Q_INVOKABLE static QString vista(vellora::Secciones::Seccion seccion);
    /// "libimobiledevice y pymobiledevice3"
    Q_INVOKABLE static QString enumerar(const QStringList &piezas);

    int rowCount(const QModelIndex &padre = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QHash<int, QByteArray> roleNames() const override;
};

} // namespace vellora
