#include "photos/SeleccionFotos.h"

#include "core/Formato.h"
#include "core/SegundoPlano.h"
#include "photos/ElegidasDelCarrete.h"
#include "photos/VistaDelCarrete.h"
#include "session/Consentimiento.h"
#include "session/Modelo.h"

#include <QFileInfo>
#include <QUrl>

#include <utility>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

/// What the window draws a file of this computer from.
QUrl imagenDe(const QString &como, const QString &fichero)
{
    return QUrl(u"image://fotos/%1/%2"_s.arg(como, QString::fromLatin1(QUrl::toPercentEncoding(fichero))));
}

} // namespace

SeleccionFotos::SeleccionFotos(Modelo &elModelo, Consentimiento &elConsentimiento, QObject *padre)
    : QAbstractListModel(padre), modelo(elModelo), consentimiento(elConsentimiento)
{
    connect(&galeria, &Galeria::hecha, this, &SeleccionFotos::llegada);
    connect(&modelo.tarea(), &Tarea::acabada, this, &SeleccionFotos::acabada);
    // Another phone's roll is not this one's.
    connect(&modelo, &Modelo::cambioDeSesion, this, [this] {
        if (!udid.isEmpty() && (!modelo.seleccionado() || modelo.seleccionado()->id != udid))
            cerrar();
    });
}

void SeleccionFotos::abrir()
{
    if (!modelo.seleccionado())
        return;
    abierta_ = true;
    leer();
}

void SeleccionFotos::cerrar()
{
    abierta_ = false;
    cargando_ = false;
    olvidar();
    emit cambio();
}

void SeleccionFotos::olvidar()
{
    ++vuelta;
    beginResetModel();
    elementos = std::make_shared<Elementos>();
    filas.clear();
    filaDeRuta.clear();
    endResetModel();
    udid.clear();
    ninguna();
}

void SeleccionFotos::acabada(bool bien)
{
    auto &tarea = modelo.tarea();
    // How a deletion failed stays in view, whatever is read after it.
    if (std::exchange(borrando, false) && !bien && abierta_)
        fallo = {tarea.titulo(), tarea.detalle(), tarea.registro()};
    else if (auto suyo = std::exchange(fallo, std::nullopt))
        tarea.rechazar(suyo->titulo, suyo->detalle, suyo->registro);
    if (abierta_ && std::exchange(porLeer, false))
        return leer();
    if (bien || !cargando_)
        return; // the list is on its way
    cargando_ = false;
    noSeLee_ = true;
    emit cambio();
}

void SeleccionFotos::leer()
{
    const auto &elegido = modelo.seleccionado();
    if (!elegido)
        return;
    cargando_ = true;
    noSeLee_ = false;
    emit cambio();
    porLeer = modelo.tarea().enMarcha();
    if (porLeer)
        return;
    const auto suyo = elegido->id;
    carpeta = modelo.carpetaFotos();
    const auto recibir = [this, suyo](const CarreteListado &listado) {
        if (!abierta_ || !modelo.seleccionado() || modelo.seleccionado()->id != suyo)
            return;
        udid = suyo;
        alQuitarLaLista = listado.alQuitarLaLista;
        galeria.preparar(udid, modelo.carpetaFotos());
        enSegundoPlano(
            this,
            [fotos = listado.fotos, suyo] {
                Galeria::podar(suyo, fotos);
                return std::make_shared<const Elementos>(agrupar(fotos));
            },
            [this, suyo](const std::shared_ptr<const Elementos> &agrupados) {
                if (udid != suyo)
                    return;
                elementos = agrupados;
                filas.clear();
                ninguna();
                reordenar();
            });
    };
    listarCarrete(modelo.tarea(), suyo, carpeta, recibir);
    if (!modelo.tarea().enMarcha())
        acabada(false);
}

void SeleccionFotos::ponFiltro(const QString &cual)
{
    filtro_ = cual;
    reordenar();
}

void SeleccionFotos::ponOrden(const QString &cual)
{
    orden_ = cual;
    reordenar();
}

void SeleccionFotos::ponBusqueda(const QString &texto)
{
    busqueda_ = texto;
    reordenar();
}

void SeleccionFotos::reordenar()
{
    emit cambio();
    const auto trabajo = [suyos = elementos, vista = VistaDelCarrete{filtro_, orden_, busqueda_}] {
        return elegirDelCarrete(*suyos, vista);
    };
    enSegundoPlano(this, trabajo, [this, suyos = elementos, suVuelta = ++vuelta](const QList<int> &elegidos) {
        if (suVuelta != vuelta)
            return;
        beginResetModel();
        filas = elegidos;
        filaDeRuta.clear();
        for (int fila = 0; fila < filas.size(); ++fila)
            filaDeRuta.insert((*suyos)[filas[fila]].principal.ruta, fila);
        endResetModel();
        cargando_ = cargando_ && udid.isEmpty();
        emit cambio();
    });
}

const ElementoGaleria *SeleccionFotos::elemento(int fila) const
{
    return fila >= 0 && fila < filas.size() ? &(*elementos)[filas[fila]] : nullptr;
}

void SeleccionFotos::ponMarca(const ElementoGaleria &uno, bool puesta)
{
    if (puesta == marcados.contains(uno.id) || uno.soloSeCopia())
        return;
    if (puesta)
        marcados << uno.id;
    else
        marcados.remove(uno.id);
    const int signo = puesta ? 1 : -1;
    peso += signo * uno.bytes();
    sinCopiar += uno.copiado() ? 0 : signo;
}

void SeleccionFotos::marcar(int fila)
{
    const auto *uno = elemento(fila);
    if (uno == nullptr)
        return;
    if (uno->soloSeCopia())
        return consentimiento.avisar(u"Esa foto la guarda el iPhone fuera de su carrete. Se copia como las demás, pero "
                                     "no se puede borrar desde aquí."_s);
    ponMarca(*uno, !marcados.contains(uno->id));
    emit dataChanged(index(fila), index(fila), {PapelMarcada});
    emit marcasCambio();
}

void SeleccionFotos::marcarTodas()
{
    for (const auto fila : std::as_const(filas))
        ponMarca((*elementos)[fila], true);
    if (!filas.isEmpty())
        emit dataChanged(index(0), index(rowCount() - 1), {PapelMarcada});
    emit marcasCambio();
}

void SeleccionFotos::ninguna()
{
    marcados.clear();
    peso = 0;
    sinCopiar = 0;
    if (!filas.isEmpty())
        emit dataChanged(index(0), index(rowCount() - 1), {PapelMarcada});
    emit marcasCambio();
}

QStringList SeleccionFotos::rutasMarcadas() const
{
    QStringList rutas;
    for (const auto &uno : *elementos) {
        if (marcados.contains(uno.id))
            rutas << uno.rutas();
    }
    return rutas;
}

QString SeleccionFotos::pesoMarcadoTexto() const
{
    return Formato::tamano(peso);
}

void SeleccionFotos::pedirBorrar()
{
    if (marcados.isEmpty() || modelo.tarea().enMarcha())
        return;
    const auto elegidas = elegidasParaBorrar();
    const auto otras = [this, rutas = elegidas.rutas, suyo = udid]() -> std::optional<QString> {
        if (udid == suyo && rutasMarcadas() == rutas)
            return {};
        return u"No he borrado nada: lo que está marcado ya no es lo mismo que cuando te pregunté."_s;
    };
    consentimiento.plantear({u"¿Borrar del iPhone lo que has marcado?"_s,
                             preguntaDeBorrarElegidas(marcados.size(), peso, sinCopiar, alQuitarLaLista),
                             u"Borrar del iPhone"_s, u"No borrar nada"_s, Cerradura::BorrarFotos, udid, otras,
                             [this, elegidas] {
                                 borrar(elegidas);
                             }});
}

ElegidasParaBorrar SeleccionFotos::elegidasParaBorrar() const
{
    ElegidasParaBorrar elegidas{rutasMarcadas(), {}, carpeta};
    for (const auto &uno : *elementos) {
        if (marcados.contains(uno.id) && !uno.copiado())
            elegidas.sinCopiar << uno.rutas();
    }
    return elegidas;
}

void SeleccionFotos::borrar(const ElegidasParaBorrar &elegidas)
{
    borrando = true;
    borrarElegidasDeVerdad(modelo.tarea(), udid, elegidas,
                           [this](const QString &resumen) { consentimiento.avisar(resumen); });
    porLeer = modelo.tarea().enMarcha();
}

void SeleccionFotos::llegada(const QString &ruta)
{
    if (const auto fila = filaDeRuta.constFind(ruta); fila != filaDeRuta.cend())
        emit dataChanged(index(*fila), index(*fila), {PapelMiniatura});
}

QUrl SeleccionFotos::imagenGrande(int fila) const
{
    const auto *uno = elemento(fila);
    if (uno == nullptr)
        return {};
    const auto &foto = uno->principal;
    const QFileInfo copia(modelo.carpetaFotos() + u'/' + foto.carpeta + u'/' + foto.nombre);
    if (copia.isFile() && copia.size() == foto.bytes)
        return imagenDe(u"entera"_s, copia.filePath());
    const auto pequena = galeria.miniatura(foto);
    return pequena.isEmpty() ? QUrl() : imagenDe(u"entera"_s, pequena);
}

QString SeleccionFotos::descripcion(int fila) const
{
    const auto *uno = elemento(fila);
    return uno == nullptr ? QString() : uno->descripcion();
}

int SeleccionFotos::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(filas.size());
}

QVariant SeleccionFotos::data(const QModelIndex &indice, int papel) const
{
    const auto *uno = elemento(indice.row());
    if (uno == nullptr)
        return {};
    switch (papel) {
    case PapelId:
        return uno->id;
    case PapelNombre:
        return uno->principal.nombre;
    case PapelMiniatura: {
        const auto fichero = galeria.miniatura(uno->principal);
        return fichero.isEmpty() ? QUrl() : imagenDe(u"celda"_s, fichero);
    }
    case PapelVideo:
        return uno->esVideo();
    case PapelVivo:
        return uno->esVivo();
    case PapelRetocada:
        return uno->retocada();
    case PapelCopiado:
        return uno->copiado();
    case PapelEstado:
        return uno->principal.estado;
    case PapelMarcada:
        return marcados.contains(uno->id);
    case PapelPeso:
        return Formato::tamano(uno->bytes());
    default:
        return {};
    }
}

QHash<int, QByteArray> SeleccionFotos::roleNames() const
{
    return {{PapelId, "identidad"},    {PapelNombre, "nombre"}, {PapelMiniatura, "miniatura"},
            {PapelVideo, "video"},     {PapelVivo, "vivo"},     {PapelRetocada, "retocada"},
            {PapelCopiado, "copiado"}, {PapelEstado, "estado"}, {PapelMarcada, "marcada"},
            {PapelPeso, "peso"}};
}

} // namespace vellora
