#include "core/Diario.h"

#include "core/FicheroDelDiario.h"
#include "core/Formato.h"
#include "core/Tarea.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

Actividad avisoDeDanado()
{
    Actividad aviso;
    aviso.id = QUuid::createUuid();
    aviso.titulo = u"Historial de actividad"_s;
    aviso.detalle = u"El historial estaba dañado y no se puede leer. Lo aparto sin borrarlo y empiezo uno nuevo."_s;
    aviso.estado = Actividad::Estado::Mal;
    aviso.empezo = QDateTime::currentDateTimeUtc();
    aviso.termino = aviso.empezo;
    return aviso;
}

} // namespace

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

Diario::Diario(const QString &ruta, QObject *padre) : QAbstractListModel(padre), fichero(ruta), cerrojo(ruta)
{
    actividades = junta();
    connect(&vigia, &QFileSystemWatcher::directoryChanged, this, &Diario::releer);
    if (QFileInfo::exists(fichero))
        vigia.addPath(QFileInfo(fichero).path());
}

QString Diario::ficheroPorDefecto()
{
    return QDir::homePath() + u"/Vellora/actividad.json"_s;
}

QList<Actividad> Diario::delFichero()
{
    bool ilegible = false;
    auto leidas = leerDiario(fichero, &ilegible);
    if (ilegible && !aviso_)
        aviso_ = avisoDeDanado();
    QList<Actividad> quedan;
    for (auto &una : leidas) {
        if (propias.contains(una.id) && posicion(una.id) < 0)
            continue; // there were too many, or the owner removed it
        if (una.estado == Actividad::Estado::EnMarcha && !propias.contains(una.id) && !cerrojo.correEnOtro(una.id)) {
            una.estado = Actividad::Estado::Cancelada;
            una.detalle = u"Se cerró la app"_s;
        }
        quedan << una;
    }
    return quedan;
}

QList<Actividad> Diario::junta()
{
    auto todas = delFichero();
    qsizetype delante = 0;
    if (aviso_ && !propias.contains(aviso_->id)) {
        propias << aviso_->id;
        todas.prepend(*aviso_);
        ++delante;
    }
    for (const auto &una : std::as_const(actividades)) {
        if (!propias.contains(una.id))
            continue;
        const auto suya = std::find_if(todas.begin(), todas.end(), [&](const auto &otra) { return otra.id == una.id; });
        if (suya != todas.end())
            *suya = una;
        else
            todas.insert(delante++, una);
    }
    if (todas.size() > maximo)
        todas.resize(maximo);
    return todas;
}

void Diario::poner(const QList<Actividad> &nueva)
{
    if (nueva == actividades)
        return;
    beginResetModel();
    actividades = nueva;
    endResetModel();
}

void Diario::guardar(Lista como)
{
    if (!cerrojo.tomarTurno())
        return;
    poner(como == Lista::Vacia ? QList<Actividad>() : junta());
    apartarDiario(fichero);
    escribirDiario(fichero, actividades);
    cerrojo.dejarTurno();
    if (vigia.directories().isEmpty())
        vigia.addPath(QFileInfo(fichero).path());
}

void Diario::releer()
{
    const auto antes = actividades;
    poner(junta());
    if (actividades != antes)
        emit cambio();
}

QUuid Diario::empezar(const QString &titulo)
{
    // The oldest entry is spared on purpose: what it says stays as it was written.
    for (qsizetype i = 0; i + 1 < actividades.size(); ++i) {
        if (actividades[i].estado == Actividad::Estado::EnMarcha && propias.contains(actividades[i].id)) {
            actividades[i].estado = Actividad::Estado::Cancelada;
            cerrojo.parar(actividades[i].id);
            filaCambiada(i);
        }
    }
    Actividad nueva;
    nueva.id = QUuid::createUuid();
    nueva.titulo = titulo;
    nueva.detalle = u"Empezando…"_s;
    nueva.empezo = QDateTime::currentDateTimeUtc();
    propias << nueva.id;
    cerrojo.correr(nueva.id);
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
    filaCambiada(fila);
    guardar();
    cerrojo.parar(id);
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
    aviso_.reset();
    guardar(Lista::Vacia);
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
