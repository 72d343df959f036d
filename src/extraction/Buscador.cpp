#include "extraction/Buscador.h"

#include "core/SegundoPlano.h"
#include "platform/AbridorDeDirecciones.h"
#include "session/Modelo.h"

#include <QCoreApplication>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace vellora
{

namespace
{

constexpr qsizetype letrasQueHacenFalta = 2;
constexpr double pasoDelAvance = 0.02; // what an eye can tell

} // namespace

Buscador::Buscador(Modelo &elModelo, QObject *padre) : QAbstractListModel(padre), modelo(elModelo) {}

void Buscador::buscar(const QString &texto)
{
    const auto palabra = texto.trimmed();
    if (palabra.size() < letrasQueHacenFalta)
        return;
    ++enMarcha;
    avance_ = 0;
    emit cambio();
    emit avanceCambio();
    const auto avisar = [yo = QPointer(this), dicho = 0.0](double parte) mutable {
        if (parte < dicho + pasoDelAvance)
            return;
        dicho = parte;
        const auto entregar = [yo, parte] {
            if (!yo)
                return;
            yo->avance_ = parte;
            emit yo->avanceCambio();
        };
        QMetaObject::invokeMethod(QCoreApplication::instance(), entregar, Qt::QueuedConnection);
    };
    const auto trabajo = [palabra, datos = modelo.carpetaDatos(),
                          indice = modelo.carpetaFotosParaIA() + u"/.indice-fotos.json"_s, avisar] {
        return BuscadorGlobal::buscarEn(palabra, datos, indice, avisar);
    };
    enSegundoPlano(this, trabajo, [this, palabra](const QList<ResultadoGlobal> &hallados) {
        --enMarcha;
        buscado_ = palabra;
        beginResetModel();
        resultados_ = hallados;
        endResetModel();
        emit cambio();
    });
}

void Buscador::olvidar()
{
    beginResetModel();
    resultados_.clear();
    buscado_.clear();
    endResetModel();
    emit cambio();
}

void Buscador::abrir(int fila)
{
    if (fila < 0 || fila >= resultados_.size())
        return;
    const auto &uno = resultados_[fila];
    if (uno.tipo == "WhatsApp"_L1 || uno.tipo == "Mensaje"_L1)
        emit verChats(uno.fichero);
    else if (uno.tipo == "Contacto"_L1 || uno.tipo == "Cita"_L1)
        emit verTabla(uno.fichero);
    else if (uno.tipo == "Nota"_L1)
        emit verTexto(uno.fichero);
    else
        abrirDireccion(QUrl::fromLocalFile(uno.fichero));
}

int Buscador::rowCount(const QModelIndex &padre) const
{
    return padre.isValid() ? 0 : static_cast<int>(resultados_.size());
}

QVariant Buscador::data(const QModelIndex &indice, int papel) const
{
    if (!checkIndex(indice, CheckIndexOption::IndexIsValid))
        return {};
    const auto &uno = resultados_[indice.row()];
    switch (papel) {
    case PapelTipo:
        return uno.tipo;
    case PapelTitulo:
        return uno.titulo;
    case PapelExtracto:
        return uno.extracto;
    case PapelIcono:
        return uno.icono;
    default:
        return {};
    }
}

QHash<int, QByteArray> Buscador::roleNames() const
{
    return {{PapelTipo, "tipo"}, {PapelTitulo, "titulo"}, {PapelExtracto, "extracto"}, {PapelIcono, "icono"}};
}

} // namespace vellora
