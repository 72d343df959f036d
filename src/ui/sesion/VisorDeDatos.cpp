#include "ui/sesion/VisorDeDatos.h"

#include "core/Tarea.h"
#include "platform/AbridorDeDirecciones.h"
#include "session/Modelo.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace vellora
{

VisorDeDatos::VisorDeDatos(Modelo &elModelo, QObject *padre) : QObject(padre), modelo(elModelo)
{
    // A job may have taken out more.
    connect(&modelo.tarea(), &Tarea::acabada, this, [this] {
        if (vista() == Inventario)
            misDatos.mirar(modelo.carpetaDatos());
    });
}

void VisorDeDatos::poner(Vista nueva)
{
    pila << nueva;
    emit cambio();
}

void VisorDeDatos::verMisDatos()
{
    misDatos.mirar(modelo.carpetaDatos());
    pila.clear();
    poner(Inventario);
}

void VisorDeDatos::verEntrada(int fila)
{
    const auto entrada = misDatos.entrada(fila);
    if (!entrada)
        return;
    switch (entrada->clase) {
    case MisDatos::Chats:
        conversaciones.abrir(entrada->ruta, entrada->titulo);
        return poner(Chats);
    case MisDatos::Tabla:
        return verTabla(entrada->ruta);
    case MisDatos::Texto:
        return verTexto(entrada->ruta);
    case MisDatos::Carpeta:
        return modelo.abrirEnFinder(entrada->ruta);
    case MisDatos::Pagina:
        return abrirDireccion(QUrl::fromLocalFile(entrada->ruta));
    }
}

void VisorDeDatos::abrirCarpeta()
{
    modelo.abrirEnFinder(modelo.carpetaDatos());
}

void VisorDeDatos::verChats(const QString &fichero)
{
    conversaciones.abrir(QFileInfo(fichero).path(), u"WhatsApp"_s, fichero);
    poner(Chats);
}

void VisorDeDatos::verTabla(const QString &fichero)
{
    tabla.abrir(fichero);
    poner(Tabla);
}

void VisorDeDatos::verTexto(const QString &fichero)
{
    texto.abrir(fichero);
    poner(Texto);
}

void VisorDeDatos::volver()
{
    if (pila.isEmpty())
        return;
    pila.removeLast();
    emit cambio();
}

void VisorDeDatos::cerrar()
{
    if (pila.isEmpty())
        return;
    pila.clear();
    emit cambio();
}

} // namespace vellora
