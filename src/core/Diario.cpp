#include "core/Diario.h"

#include "core/FicheroDelDiario.h"
#include "core/Formato.h"
#include "core/Tarea.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace vellora
{

QString Actividad::icono() const
{
    switch (estado) {
    case Estado::EnMarcha:
        return u"arrow.triangle.2.circlepath"_s;
    case Estado::Bien:
        return u"checkmark.circle.fill"_s;
    case Estado::Mal:
        return u"exclamationmark.triangle.fill"_s;
    case Estado::Cancelada:
        break;
    }
    return u"xmark.circle"_s;
}

QString Actividad::cuandoEnPalabras() const
{
    const auto local = empezo.toLocalTime();
    if (local.date() == QDate::currentDate())
        return u"hoy a las "_s + Formato::espanol().toString(local, u"HH:mm"_s);
    return Formato::espanol().toString(local, u"d MMM, HH:mm"_s);
}

std::optional<QString> Actividad::duracion() const
{
    if (!termino)
        return {};
    auto palabras = Tarea::enPalabras(static_cast<double>(empezo.msecsTo(*termino)) / 1000.0);
    return palabras.remove(u"unos "_s).remove(u"unas "_s);
}

Diario::Diario(const QString &ruta, QObject *padre) : QAbstractListModel(padre), fichero(ruta)
{
    cargar();
}

QString Diario::ficheroPorDefecto()
{
    return QDir::homePath() + u"/Vellora/actividad.json"_s;
}

void Diario::cargar()
{
    actividades = leerDiario(fichero);
    for (auto &una : actividades) {
        if (una.estado == Actividad::Estado::EnMarcha) {
            una.estado = Actividad::Estado::Cancelada;
            una.detalle = u"Se cerró la app"_s;
        }
    }
}

void Diario::guardar() const
{
    escribirDiario(fichero, actividades);
}

QUuid Diario::empezar(const QString &titulo)
{
    // The oldest entry is spared on purpose: what it says stays as it was written.
    for (qsizetype i = 0; i + 1 < actividades.size(); ++i) {
        if (actividades[i].estado == Actividad::Estado::EnMarcha) {
            actividades[i].estado = Actividad::Estado::Cancelada;
            filaCambiada(i);
        }
    }
    Actividad nueva;
    nueva.id = QUuid::createUuid();
    nueva.titulo = titulo;
    nueva.detalle = u"Empezando…"_s;
    nueva.empezo = QDateTime::currentDateTimeUtc();
    beginInsertRows({}, 0, 0);
    actividades.prepend(nueva);
    endInsertRows();
    if (actividades.size() > maximo) {
        beginRemoveRows({}, maximo, cuantas() - 1);
        actividades.resize(maximo);
        endRemoveRows();
    }
    guardar();
    emit cambio();
    return nueva.id;
}

void Diario::actualizar(const QUuid &id, const QString &detalle)
{
    const auto fila = posicion(id);
    if (fila < 0)
        return;
    actividades[fila].detalle = detalle;
    filaCambiada(fila);
}

void Diario::terminar(const QUuid &id, bool bien, const QString &detalle, const std::optional<QString> &carpeta)
{
    const auto fila = posicion(id);
    if (fila < 0)
        return;
    auto &una = actividades[fila];
    una.estado = bien ? Actividad::Estado::Bien : Actividad::Estado::Mal;
    una.detalle = detalle;
    una.termino = QDateTime::currentDateTimeUtc();
    una.carpeta = carpeta;
    guardar();
    filaCambiada(fila);
    emit cambio();
}

void Diario::darPorVisto()
{
    for (const auto &una : actividades) {
        if (una.estado == Actividad::Estado::Mal)
            vistas.insert(una.id);
    }
    emit cambio();
}

void Diario::borrarTodo()
{
    beginResetModel();
    actividades.clear();
    endResetModel();
    guardar();
    emit cambio();
}

int Diario::enMarcha() const
{
    return static_cast<int>(std::count_if(actividades.cbegin(), actividades.cend(), [](const Actividad &una) {
        return una.estado == Actividad::Estado::EnMarcha;
    }));
}

int Diario::fallidas() const
{
    return static_cast<int>(std::count_if(actividades.cbegin(), actividades.cend(), [this](const Actividad &una) {
        return una.estado == Actividad::Estado::Mal && !vistas.contains(una.id);
    }));
}

int Diario::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : cuantas();
}

QVariant Diario::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const auto &una = actividades[indice.row()];
    switch (papel) {
    case Qt::DisplayRole:
    case PapelTitulo:
        return una.titulo;
    case PapelDetalle:
        return una.detalle;
    case PapelEstado:
        return textoDeEstado(una.estado);
    case PapelIcono:
        return una.icono();
    case PapelCuando:
        return una.cuandoEnPalabras();
    case PapelDuracion:
        return una.duracion().value_or(QString());
    case PapelCarpeta:
        return una.carpeta.value_or(QString());
    default:
        return {};
    }
}

QHash<int, QByteArray> Diario::roleNames() const
{
    return {{PapelTitulo, "titulo"}, {PapelDetalle, "detalle"},   {PapelEstado, "estado"},  {PapelIcono, "icono"},
            {PapelCuando, "cuando"}, {PapelDuracion, "duracion"}, {PapelCarpeta, "carpeta"}};
}

qsizetype Diario::posicion(const QUuid &id) const
{
    const auto hallada =
        std::find_if(actividades.cbegin(), actividades.cend(), [&](const Actividad &una) { return una.id == id; });
    return hallada == actividades.cend() ? -1 : hallada - actividades.cbegin();
}

void Diario::filaCambiada(qsizetype fila)
{
    const auto indice = index(static_cast<int>(fila));
    emit dataChanged(indice, indice);
}

} // namespace vellora
