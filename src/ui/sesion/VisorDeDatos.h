#pragma once

#include "extraction/Conversaciones.h"
#include "extraction/MisDatos.h"
#include "extraction/TablaDeFichero.h"
#include "extraction/TextoDeFichero.h"

#include <QObject>

namespace vellora
{

class Modelo;

/// What has been taken out, opened inside the window in place of the section, with the way back. Main thread only.
class VisorDeDatos : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Vista vista READ vista NOTIFY cambio)
    Q_PROPERTY(vellora::Conversaciones *conversaciones READ conversacionesPuntero CONSTANT)
    Q_PROPERTY(vellora::MisDatos *misDatos READ misDatosPuntero CONSTANT)
    Q_PROPERTY(vellora::TablaDeFichero *tabla READ tablaPuntero CONSTANT)
    Q_PROPERTY(vellora::TextoDeFichero *texto READ textoPuntero CONSTANT)

public:
    enum Vista { Ninguna, Inventario, Chats, Tabla, Texto };
    Q_ENUM(Vista)

    explicit VisorDeDatos(Modelo &elModelo, QObject *padre = nullptr);

    Vista vista() const { return pila.isEmpty() ? Ninguna : pila.last(); }

    Q_INVOKABLE void verMisDatos();
    /// Opens one entry of the inventory by what it is.
    Q_INVOKABLE void verEntrada(int fila);
    Q_INVOKABLE void abrirCarpeta();
    /// The conversations of the folder of that file, with that one in view.
    void verChats(const QString &fichero);
    void verTabla(const QString &fichero);
    void verTexto(const QString &fichero);
    /// To where it was opened from.
    Q_INVOKABLE void volver();
    Q_INVOKABLE void cerrar();

signals:
    void cambio();

private:
    void poner(Vista vista);
    Conversaciones *conversacionesPuntero() { return &conversaciones; }
    MisDatos *misDatosPuntero() { return &misDatos; }
    TablaDeFichero *tablaPuntero() { return &tabla; }
    TextoDeFichero *textoPuntero() { return &texto; }

    Modelo &modelo;
    Conversaciones conversaciones;
    MisDatos misDatos;
    TablaDeFichero tabla;
    TextoDeFichero texto;
    QList<Vista> pila;
};

} // namespace vellora
